#include "FetchyardBussiness/DeterminantWriteFile/PdfWork.h"

#include "FetchyardBussiness/ErrorText.h"
#include "FetchyardBussiness/Folders.h"
#include "FetchyardBussiness/Log.h"
#include "FetchyardBussiness/Platform/HtmlTool.h"
#include "ZellBase/FileSystem.h"
#include "ZellTaskKit/ClientServices.h"

#include <QDateTime>

#include <mutex>

namespace FetchyardBussiness {

namespace FileSystem = Zell::Base::FileSystem;

namespace {

// The present time to the millisecond, one that no report of this process has had: two that end at once would
// otherwise write over each other's files.
std::string UnusedStamp()
{
    static auto* const mutex = new std::mutex;
    static auto* const last = new std::string;
    const std::lock_guard<std::mutex> lock(*mutex);
    std::string stamp;
    do {
        stamp =
            QDateTime::currentDateTime().toString(QStringLiteral("yyyy_MM_dd_hh_mm_ss_zzz")).toStdString();
    } while (stamp == *last);
    *last = stamp;
    return stamp;
}

}  // namespace

PdfWork NewPdfWork()
{
    const std::string folder =
        ZellTaskKit::CFrameSystemConfigMgr::Instance().GetClientDataPublicPath() + "Fetchyard/";
    const std::string stamp = UnusedStamp();
    return {folder, folder + stamp + ".html", folder + stamp + ".pdf"};
}

bool MakePdfWorkFolder(const PdfWork& work)
{
    if (EnsureFolder(work.folder))
        return true;
    Zell::Base::Error::SetLastError(OwnError(kErrorFolder));
    return false;
}

std::string PdfCommandLine(const std::string& page_size, int orientation, const PdfWork& work)
{
    const std::string turned = orientation == 0 ? "  -O landscape " : " ";
    return " --encoding utf-8" + turned + "--page-size " + page_size + " " + work.html + " " + work.pdf;
}

void RunPdfTool(const PdfWork& work, const std::string& html, const std::string& page_size, int orientation)
{
    if (FileSystem::CopyFileW(html.c_str(), work.html.c_str(), 0) != 0)
        LogError("copy html failed. html_path_new =%s", work.html.c_str());
    const std::string line = PdfCommandLine(page_size, orientation, work);
    if (!Platform::RunHtmlTool(line))
        LogInfo("requset.str_request file = %s  failed", line.c_str());
}

}  // namespace FetchyardBussiness
