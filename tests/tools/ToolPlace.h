#pragma once

#include <QByteArray>
#include <QTemporaryDir>

#include <filesystem>
#include <string>

namespace tools {

// A working folder that has the tool of the tests under the names of both outside tools; the process works
// there as long as this lives. Text is UTF-8.
class ToolPlace
{
public:
    ToolPlace();
    ToolPlace(const ToolPlace&) = delete;
    ToolPlace& operator=(const ToolPlace&) = delete;
    ~ToolPlace();

    // The folder, with a final "/".
    std::string Folder() const;
    // The code with which the tool ends from now on.
    static void EndWith(int code);
    // The lines that the last run of the tool wrote and that begin with the word, without it; each ends in a
    // line feed. The folder shows as "<tmp>/", time stamps as "<stamp>".
    std::string Told(const std::string& word) const;
    bool HasRun() const;

private:
    QTemporaryDir directory_;
    const std::filesystem::path before_ = std::filesystem::current_path();
    const QByteArray search_path_ = qgetenv("PATH");
};

}  // namespace tools
