#include "ZellBase/Log.h"

#include "Log/LogLine.h"
#include "Log/LogWriter.h"
#include "ZellBaseHost/LogHost.h"
#include "ZellBaseHost/ProcessExit.h"

#include <cstdarg>
#include <mutex>
#include <utility>

namespace Zell::Base::details {

namespace {

// Never destroyed, like the writer.
struct Listening
{
    std::mutex mutex;
    LogListener listener;

    static Listening& Instance()
    {
        static auto* const listening = new Listening;
        return *listening;
    }
};

void TellListener(const LogLine& line)
{
    Listening& listening = Listening::Instance();
    const std::lock_guard<std::mutex> lock(listening.mutex);
    if (listening.listener)
        listening.listener(line.level, line.module, line.text);
}

}  // namespace

void IOXTFormatLog(int level, const char* module, const char* format, ...)
{
    ParkIfLeaving();
    LogWriter& writer = LogWriter::Instance();
    const bool wanted = writer.IsWanted(level);
    if (format == nullptr || (!wanted && level < kLogError))
        return;
    LogLine line;
    line.time = std::chrono::system_clock::now();
    line.level = level;
    line.module = module != nullptr ? module : "";
    std::va_list arguments;
    va_start(arguments, format);
    line.text = FormatLogText(format, arguments);
    va_end(arguments);
    TellListener(line);
    if (wanted)
        writer.Post(std::move(line));
}

void SetLogListener(LogListener listener)
{
    Listening& listening = Listening::Instance();
    const std::lock_guard<std::mutex> lock(listening.mutex);
    listening.listener = std::move(listener);
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
