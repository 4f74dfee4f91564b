#include "ZellBase/Log.h"

#include "Log/LogLine.h"
#include "Log/LogWriter.h"
#include "ZellBaseHost/LogHost.h"
#include "ZellBaseHost/ProcessExit.h"

#include <cstdarg>

namespace Zell::Base::details {

void IOXTFormatLog(int level, const char* module, const char* format, ...)
{
    ParkIfLeaving();
    LogWriter& writer = LogWriter::Instance();
    if (format == nullptr || !writer.IsWanted(level))
        return;
    LogLine line;
    line.time = std::chrono::system_clock::now();
    line.level = level;
    line.module = module != nullptr ? module : "";
    std::va_list arguments;
    va_start(arguments, format);
    line.text = FormatLogText(format, arguments);
    va_end(arguments);
    writer.Post(std::move(line));
}

bool SetLogFile(const std::string& path, int level)
{
    return LogWriter::Instance().SetFile(path, level);
}

void FlushLog()
{
    while (!LogWriter::Instance().Flush(std::chrono::hours(1)))
        ParkIfLeaving();
}

}  // namespace Zell::Base::details
