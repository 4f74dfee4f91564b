#pragma once

#include "station/Generated/OutputFile.h"
#include "station/Generated/ReportFile.h"

namespace Station {

// One page that needs nothing beside it, made to be printed: the columns' names stand on top of each sheet of
// paper, small pictures are in the page.
class HtmlReport final : public ReportFile
{
public:
    HtmlReport(const std::filesystem::path& path, PictureMode mode, EventPictures& pictures);

    void AddHead(const std::vector<std::string>& titles, const std::vector<ReportColumn>& columns) override;
    void AddRow(const Event& event, const ReportRow& row) override;
    void Finish() override;

private:
    void AddPicture(const Event& event);

    const bool has_pictures_;
    EventPictures& pictures_;
    OutputFile file_;
};

}  // namespace Station
