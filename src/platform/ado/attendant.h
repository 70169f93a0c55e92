#pragma once

#include <functional>

namespace ado {

/// Whoever is asked, every few milliseconds, while a thread waits for the wire: may serve what must not wait
/// so long. When the answer is no, what is waited for is broken off: the connection is given up and the call
/// throws Error with the number of a cancelled operation. Must not throw; asked again meanwhile, when what it
/// serves waits for the wire, too.
using Attendant = std::function<bool()>;

/// The calling thread's from now on; none when it is empty, as it is at first.
void setAttendant(Attendant attendant);
/// Asks the calling thread's; true when it has none.
bool attend();

}  // namespace ado
