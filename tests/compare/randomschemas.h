#pragma once

#include "fakesystem.h"

#include <QRandomGenerator>

/// A schema out of few texts, so that two of a kind have much in common: duplicates, names that differ in
/// case only, blanks where the list leaves them, groups that end early and empty ones.
FakeSchema randomSchema(QRandomGenerator& random);
