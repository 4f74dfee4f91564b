#include "FetchyardBussiness/Platform/HtmlTool.h"

#include <filesystem>
#include <iterator>
#include <sstream>
#include <string>
#include <vector>

namespace FetchyardBussiness::Platform {

// Stands in for the tool: the PDF is the HTML, letter for letter, so that the reference shows it.
bool RunHtmlTool(const std::string& command_line)
{
    std::istringstream line(command_line);
    const std::vector<std::string> words{std::istream_iterator<std::string>(line), {}};
    std::error_code ignored;
    std::filesystem::copy_file(words.at(words.size() - 2), words.back(), ignored);
    return true;
}

}  // namespace FetchyardBussiness::Platform
