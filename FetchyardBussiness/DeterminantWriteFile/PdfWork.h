#pragma once

#include <string>

namespace FetchyardBussiness {

// Where the HTML tool works on one report: copies under a time stamp in the client's public data folder. No
// two reports of one process have the same.
struct PdfWork
{
    std::string folder;
    std::string html;
    std::string pdf;
};

// The names, by the present time.
PdfWork NewPdfWork();
// Makes its folder if that is missing; false, with the last error set, if it can't be made.
bool MakePdfWorkFolder(const PdfWork& work);
// The tool's arguments. Nothing is quoted, so a blank in the folder's name breaks them. An orientation of 0
// is landscape, any other the tool's default.
std::string PdfCommandLine(const std::string& page_size, int orientation, const PdfWork& work);
// Copies the page there and lets the tool make work.pdf of it. What goes wrong is only logged.
void RunPdfTool(const PdfWork& work, const std::string& html, const std::string& page_size, int orientation);

}  // namespace FetchyardBussiness
