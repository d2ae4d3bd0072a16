#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tallory {

// Resolves a course path written with "\" separators ("\SessionData\Config.csv") under a folder,
// component by component without regard to case. A component that does not exist yet keeps the
// literal's spelling, so a new file is created as the literal names it.
std::string CoursePath(const std::string& folder, std::string_view literal);

// True when the length of the file can be obtained (an empty file exists).
bool FileExists(const std::string& path);
bool FolderExists(const std::string& path);
// Creates the folder and all missing parents; failures are silent.
void CreateFolderPath(const std::string& path);

// Names (not paths) of the regular files, or sub-folders, of a folder, in the order the system
// lists them; empty when the folder cannot be read.
std::vector<std::string> ListFiles(const std::string& folder);
std::vector<std::string> ListFolders(const std::string& folder);

// The path with every link and "." or ".." resolved; empty when it cannot be resolved (a
// component that does not exist).
std::string RealPath(const std::string& path);

// The last component of a path, without trailing separators.
std::string LastComponent(const std::string& path);
// Joins a folder and a name with "/".
std::string JoinPath(const std::string& folder, std::string_view name);

}  // namespace tallory
