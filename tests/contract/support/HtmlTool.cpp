#include "FetchyardBussiness/Platform/HtmlTool.h"

#include "fakes/Journal.h"
#include "support/HtmlTool.h"

#include <fstream>
#include <iterator>
#include <sstream>
#include <vector>

namespace {

std::string html;

}

namespace contract {

std::string HtmlOfTheTool()
{
    return html;
}

}  // namespace contract

namespace FetchyardBussiness::Platform {

// Stands in for the platform's source: the last two words of the line are the input and the output.
bool RunHtmlTool(const std::string& command_line)
{
    std::istringstream line(command_line);
    const std::vector<std::string> words{std::istream_iterator<std::string>(line), {}};
    html.clear();
    if (!fakes::Call("wkhtmltopdf", command_line))
        return false;
    std::ifstream input(words.at(words.size() - 2), std::ios::binary);
    if (!input)
        return true;
    html.assign(std::istreambuf_iterator<char>(input), {});
    std::ofstream(words.back(), std::ios::binary) << "%PDF of " << html.size() << " bytes";
    return true;
}

}  // namespace FetchyardBussiness::Platform
