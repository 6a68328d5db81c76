#pragma once

#include <string>
#include <vector>

#include "store/index_record.h"

namespace corvalence::store {

/// What a baseline is: a database of its own, or a component of a Complete System database, whose files have
/// other names so that the components do not collide.
enum class Form { Standalone, Component };

/// The files of a kind below the path of a database, in the kind's order. Directory Structure: files,
/// folders, streams, Recycle Bin; the other kinds have one. None for numbered databases, whose own file is no
/// component.
std::vector<std::string> componentFiles(DatabaseKind kind, Form form, const std::string& database);

/// Every file that a database of this kind may have beside its own; of numbered ones those of all
/// components.
std::vector<std::string> siblingFiles(DatabaseKind kind, const std::string& database);

/// The files by which a numbered database is told for a Complete System: the first one of each component.
std::vector<std::string> componentMarks(const std::string& database);

}  // namespace corvalence::store
