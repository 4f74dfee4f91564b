// Stands in the place of an outside tool: writes how it was started into the file that TOOL_REPORT names, and
// ends with the code of TOOL_CODE, 0 without it.
#include "Platform/ToolStart.h"

#include <filesystem>
#include <fstream>

int main(int count, char** arguments)
{
    std::ofstream report(std::filesystem::u8path(tools::Variable("TOOL_REPORT")), std::ios::binary);
    tools::WriteStart(report, count, arguments);
    const std::string code = tools::Variable("TOOL_CODE");
    return code.empty() ? 0 : std::stoi(code);
}
