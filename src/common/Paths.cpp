#include "common/Paths.h"

#include <dirent.h>
#include <sys/stat.h>

#include <cerrno>
#include <cstdlib>

#include "common/Text.h"

namespace tallory {

std::string JoinPath(const std::string& folder, std::string_view name) {
    if (folder.empty()) return std::string(name);
    if (folder.back() == '/') return folder + std::string(name);
    return folder + "/" + std::string(name);
}

static std::vector<std::string> ListEntries(const std::string& folder, bool wantFolders) {
    std::vector<std::string> names;
    DIR* dir = ::opendir(folder.empty() ? "." : folder.c_str());
    if (!dir) return names;
    while (dirent* entry = ::readdir(dir)) {
        std::string name = entry->d_name;
        if (name == "." || name == "..") continue;
        struct stat info;
        if (::stat(JoinPath(folder, name).c_str(), &info) != 0) continue;
        if (wantFolders ? S_ISDIR(info.st_mode) : S_ISREG(info.st_mode)) names.push_back(name);
    }
    ::closedir(dir);
    return names;
}

std::vector<std::string> ListFiles(const std::string& folder) {
    return ListEntries(folder, false);
}
std::vector<std::string> ListFolders(const std::string& folder) {
    return ListEntries(folder, true);
}

// The entry of `folder` whose name equals `name` without regard to case; an exact match wins.
static std::string FindEntry(const std::string& folder, const std::string& name) {
    struct stat info;
    std::string exact = JoinPath(folder, name);
    if (::lstat(exact.c_str(), &info) == 0) return name;
    DIR* dir = ::opendir(folder.empty() ? "." : folder.c_str());
    if (!dir) return name;
    std::string wanted = ToUpper(name);
    std::string found = name;
    while (dirent* entry = ::readdir(dir)) {
        if (ToUpper(entry->d_name) == wanted) {
            found = entry->d_name;
            break;
        }
    }
    ::closedir(dir);
    return found;
}

std::string CoursePath(const std::string& folder, std::string_view literal) {
    std::string path = folder;
    size_t at = 0;
    while (at <= literal.size()) {
        size_t next = literal.find_first_of("\\/", at);
        if (next == std::string_view::npos) next = literal.size();
        std::string component(literal.substr(at, next - at));
        if (!component.empty()) path = JoinPath(path, FindEntry(path, component));
        at = next + 1;
    }
    if (!literal.empty() && (literal.back() == '\\' || literal.back() == '/')) path += "/";
    return path;
}

bool FileExists(const std::string& path) {
    struct stat info;
    return ::stat(path.c_str(), &info) == 0 && !S_ISDIR(info.st_mode);
}

bool FolderExists(const std::string& path) {
    struct stat info;
    return ::stat(path.c_str(), &info) == 0 && S_ISDIR(info.st_mode);
}

void CreateFolderPath(const std::string& path) {
    std::string partial;
    for (size_t i = 0; i <= path.size(); ++i) {
        if (i == path.size() || path[i] == '/') {
            if (!partial.empty()) ::mkdir(partial.c_str(), 0777);
        }
        if (i < path.size()) partial += path[i];
    }
}

std::string LastComponent(const std::string& path) {
    std::string trimmed = path;
    while (trimmed.size() > 1 && trimmed.back() == '/') trimmed.pop_back();
    size_t slash = trimmed.rfind('/');
    return slash == std::string::npos ? trimmed : trimmed.substr(slash + 1);
}

std::string RealPath(const std::string& path) {
    char* real = ::realpath(path.c_str(), nullptr);
    if (!real) return {};
    std::string text(real);
    std::free(real);
    return text;
}

}  // namespace tallory
