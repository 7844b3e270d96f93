#include "DongleSearch.h"

#include <cstdlib>
#include <filesystem>
#include <system_error>

namespace velmorindal {
namespace {

namespace fs = std::filesystem;

std::string environmentOr(const char* name, std::string fallback) {
    const char* const value = std::getenv(name);
    return value != nullptr && *value != '\0' ? std::string{value} : std::move(fallback);
}

/// Appends the relative names under `directory`, each with `relativeTo` in front. A directory that vanishes
/// or cannot be read ends only its listing.
void walk(const fs::path& directory, const std::string& relativeTo, std::vector<std::string>& names) {
    std::error_code error;
    for (fs::directory_iterator entry{directory, error}; !error && entry != fs::directory_iterator{};
         entry.increment(error)) {
        const std::string name = relativeTo + entry->path().filename().native();
        names.push_back(name);
        std::error_code unreadable;
        if (entry->symlink_status(unreadable).type() == fs::file_type::directory) {
            walk(entry->path(), name + '/', names);
        }
    }
}

}  // namespace

DongleSearch DongleSearch::fromEnvironment() {
    const DongleSearch defaults;
    return {.directory = environmentOr("VELMORINDAL_DEVICE_DIRECTORY", defaults.directory),
            .prefix = environmentOr("VELMORINDAL_DEVICE_PREFIX", defaults.prefix)};
}

std::vector<std::string> DongleSearch::candidates() const {
    std::vector<std::string> names;
    walk(directory, "", names);
    const std::string root = directory.ends_with('/') ? directory : directory + '/';
    std::vector<std::string> paths;
    for (const std::string& name : names) {
        if (name.starts_with(prefix)) {
            paths.push_back(root + name);
        }
    }
    return paths;
}

}  // namespace velmorindal
