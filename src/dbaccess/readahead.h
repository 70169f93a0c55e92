#pragma once

#include "platform/ado/answers.h"

#include <QString>
#include <QStringList>

#include <functional>
#include <memory>
#include <optional>
#include <tuple>
#include <vector>

namespace tw {

/// Reads what catalog routines will ask for on threads of its own, on a few connections at once, so that the
/// next answers come over the line while the last ones are worked on.
///
/// What was read is handed over whole, with the failures that statements ended in, or not at all: what a lost
/// line or a refused login kept from being read is left to whoever wants it, who is told why. To be used on
/// one thread; the readers see nothing of it but the requests and their own results.
class ReadAhead {
  public:
    /// A statement on a connection string.
    struct Question {
        QString connectionString;
        QString statement;

        bool operator==(const Question&) const = default;
        bool operator<(const Question& other) const {
            return std::tie(statement, connectionString) < std::tie(other.statement, other.connectionString);
        }
    };
    /// A question, and the statements that follow it on the same connection when it has rows. Thousands of
    /// them may wait, so the long texts are made when they are needed; by a reader, from nothing but
    /// themselves.
    struct Request {
        Question question;
        QStringList fields{};  ///< of the question that are read; all when it is empty
        std::function<QStringList()> followers{};
    };

    static constexpr int LeastReaders = 2;
    static constexpr int MostReaders = 8;

    /// Reads on at most so many connections at once: on `LeastReaders` of them where the server is near, on
    /// more as a statement takes longer to be answered.
    explicit ReadAhead(int mostReaders = MostReaders);
    /// Breaks off the statements in flight and returns at once; the readers end by themselves.
    ~ReadAhead();
    ReadAhead(const ReadAhead&) = delete;
    ReadAhead& operator=(const ReadAhead&) = delete;

    /// Ends all that is being read ahead for this thread, so that the server may take another login. False
    /// when nobody was reading.
    static bool makeRoom();

    /// Will be asked for, behind what was expected before. Not too much of it is read before it is taken.
    void expect(std::vector<Request> requests);

    /// Waits until an expected question has been read or given up, asking `goesOn` now and then; false when
    /// that has said no. True at once for what is not expected.
    bool await(const Question& question, const std::function<bool()>& goesOn);
    /// What was read for a question, once; waits for it, and throws ado::Error when the thread's attendant
    /// breaks that off. Nothing when it was not expected, or could not be read.
    std::optional<ado::Answers> take(const Question& question);

  private:
    class Desk;
    static std::vector<ReadAhead*>& ofThisThread();
    void engageReaders();

    std::shared_ptr<Desk> m_desk;
    int m_mostReaders;
};

}  // namespace tw
