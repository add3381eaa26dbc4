#pragma once

#include <filesystem>
#include <string>

namespace tovi {

/// A folder that takes the place of `folder` once it is complete; gone at the end of this object
/// if it never did. Only its maker may look into it.
class NewFolder {
public:
    /// Throws Failure, in the name of `operation`, when there is anything of that name already, or
    /// nothing can be made beside it.
    NewFolder(const std::filesystem::path& folder, std::string operation);
    ~NewFolder();
    NewFolder(const NewFolder&) = delete;
    NewFolder& operator=(const NewFolder&) = delete;

    /// Where it is until then.
    const std::filesystem::path& path() const { return path_; }
    /// Gives it its name. Throws Failure when that is taken by now.
    void complete();

private:
    void refuseTaken() const;

    std::filesystem::path folder_;
    std::string operation_;
    std::filesystem::path path_;
};

}  // namespace tovi
