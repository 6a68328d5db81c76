#pragma once

#include <string>

namespace corvalence::test {

// What tests do to files behind the program's back, and what differs from system to system there.

/// Makes a symbolic link; false where the system does not let the test do so.
bool makeLink(const std::string& target, const std::string& link);
/// Makes something in a folder that is neither file nor folder nor link; false where there is no such thing.
bool makePipe(const std::string& path);
/// Gives a file or folder a named stream, or takes it away; false where the system has none.
bool addStream(const std::string& path, const std::string& name);
bool removeStream(const std::string& path, const std::string& name);
/// The name by which StreamSource tells a stream that was added by this one.
std::string streamName(const std::string& name);
/// Takes the right to write away from everybody, or gives it back to the owner.
void setReadOnly(const std::string& path, bool readOnly);
/// Whether nobody but the owner (and who administrates the machine anyway) may do anything with it.
bool isOwnersAlone(const std::string& path);
/// Whether a file of this name can be.
bool canBeNamed(const std::string& name);
/// Something outside the file system that can be opened like a file; empty where there is none.
std::string deviceFile();

/// Whether something else stands in for the system (Wine): it starts programs slowly, and lacks some of its
/// calls.
bool isEmulated();

/// Where tests make their folders.
std::string usualFolder();
/// A folder on another volume, if the machine has two.
std::string otherVolume();
/// A folder with a short path.
std::string shortFolder();
/// A folder whose files lie in memory, where the machine has one: for worlds that are made a thousand times
/// over, each file of which is brought to the device.
std::string quickFolder();

}  // namespace corvalence::test
