#include "station/Generated/WorkbookReport.h"

#include "station/Generated/Thumbnail.h"
#include "station/Report/JsonText.h"

#include <xlsxwriter.h>

#include <array>
#include <cstdlib>
#include <system_error>

namespace Station {
namespace {

constexpr std::uint32_t kMostRows = LXW_ROW_MAX;
constexpr std::size_t kMostLetters = 32767;  // UTF-16 units of a cell
constexpr double kPictureRowHeight = 70;     // points
constexpr double kTextRowHeight = 15.75;     // points; the library leaves out 15, its own default
constexpr double kPictureScale = 0.48;       // fits into its column and its row
constexpr int kRoomCheckRows = 1000;
constexpr std::uintmax_t kLeastRoom = 16u << 20;  // bytes
constexpr std::uintmax_t kRoomOfRow = 1024;       // bytes, in the sheet's text and packed, at the close

// The text as a cell takes it: valid, and cut at the format's limit. Bytes are at least as many as UTF-16
// units.
std::string CellText(std::string_view text)
{
    std::string valid = ToValidUtf8(text);
    if (valid.size() <= kMostLetters)
        return valid;
    std::size_t end = kMostLetters;
    while ((static_cast<unsigned char>(valid[end]) & 0xC0) == 0x80)
        --end;
    valid.resize(end);
    return valid;
}

}  // namespace

struct WorkbookReport::Formats
{
    lxw_format* title = nullptr;
    lxw_format* subtitle = nullptr;
    lxw_format* header = nullptr;
    lxw_format* plain = nullptr;
    lxw_format* number = nullptr;
    lxw_format* percent = nullptr;
    lxw_format* centred = nullptr;
    lxw_format* wrapped = nullptr;
    std::array<lxw_format*, 5> levels{};
};

WorkbookReport::WorkbookReport(const std::filesystem::path& path, PictureMode mode, EventPictures& pictures)
    : path_(path),
      folder_(path.parent_path().u8string()),
      mode_(mode),
      pictures_(pictures),
      formats_(std::make_unique<Formats>())
{
    // Its scratch files lie where there must be room anyhow.
    lxw_workbook_options options{};
    options.constant_memory = LXW_TRUE;
    options.tmpdir = folder_.data();
    CheckRoom();
    book_ = workbook_new_opt(path_.u8string().c_str(), &options);
    if (book_ == nullptr)
        throw StoreError("The workbook can't be made.");
    MakeFormats();
}

WorkbookReport::~WorkbookReport()
{
    // Without its closing the scratch files of the sheets would stay open.
    if (book_ != nullptr)
        workbook_close(book_);
}

void WorkbookReport::MakeFormats()
{
    const auto make = [this](lxw_color_t back, lxw_color_t text, bool is_bold, std::uint8_t place) {
        lxw_format* const format = workbook_add_format(book_);
        format_set_align(format, place);
        format_set_align(format, LXW_ALIGN_VERTICAL_TOP);
        if (is_bold)
            format_set_bold(format);
        if (back != 0xFFFFFF)
            format_set_bg_color(format, back);
        format_set_font_color(format, text);
        return format;
    };
    constexpr lxw_color_t kWhite = 0xFFFFFF;
    formats_->title = make(0xBDD7EE, 0x1F3864, true, LXW_ALIGN_CENTER);
    format_set_font_size(formats_->title, 12);
    formats_->subtitle = make(0xF2F2F2, 0x404040, false, LXW_ALIGN_CENTER);
    formats_->header = make(0xDDEBF7, 0x000000, true, LXW_ALIGN_CENTER);
    formats_->plain = make(kWhite, 0x000000, false, LXW_ALIGN_LEFT);
    formats_->number = make(kWhite, 0x000000, false, LXW_ALIGN_RIGHT);
    formats_->percent = make(kWhite, 0x000000, false, LXW_ALIGN_RIGHT);
    format_set_num_format(formats_->percent, "0\" %\"");
    formats_->centred = make(kWhite, 0x000000, false, LXW_ALIGN_CENTER);
    formats_->wrapped = make(kWhite, 0x000000, false, LXW_ALIGN_LEFT);
    format_set_text_wrap(formats_->wrapped);
    format_set_indent(formats_->wrapped, 1);  // the column before ends in a number
    constexpr std::array<std::pair<lxw_color_t, lxw_color_t>, 5> kLevels = {{{0xE2EFDA, 0x375623},
                                                                             {0xDDEBF7, 0x1F4E78},
                                                                             {0xFFF2CC, 0x7F6000},
                                                                             {0xF8CBAD, 0x833C0C},
                                                                             {0xC00000, 0xFFFFFF}}};
    for (std::size_t i = 0; i < kLevels.size(); ++i)
        formats_->levels[i] = make(kLevels[i].first, kLevels[i].second, i >= 3, LXW_ALIGN_CENTER);
}

void WorkbookReport::AddHead(const std::vector<std::string>& titles, const std::vector<ReportColumn>& columns)
{
    titles_ = titles;
    columns_ = columns;
    StartSheet();
}

void WorkbookReport::StartSheet()
{
    ++sheets_;
    const std::string name = sheets_ == 1 ? "Alarms" : "Alarms " + std::to_string(sheets_);
    sheet_ = workbook_add_worksheet(book_, name.c_str());
    if (sheet_ == nullptr)
        throw StoreError("The sheet " + name + " can't be made.");
    const auto last = static_cast<std::uint16_t>(columns_.size() - 1);
    for (std::uint16_t i = 0; i <= last; ++i)
        Check(worksheet_set_column(sheet_, i, i, columns_[i].width, nullptr));
    row_ = 0;
    // The library forgets the heights of rows that left memory, and would stretch a picture over several of
    // the default height: so that is the pictures' height.
    has_picture_rows_ = mode_ == PictureMode::Embedded;
    if (has_picture_rows_)
        worksheet_set_default_row(sheet_, kPictureRowHeight, LXW_FALSE);
    for (const std::string& title : titles_) {
        SetTextRow();
        lxw_format* const format = row_ == 0 ? formats_->title : formats_->subtitle;
        Check(worksheet_merge_range(sheet_, row_, 0, row_, last, CellText(title).c_str(), format));
        ++row_;
    }
    SetTextRow();
    header_row_ = row_++;
    for (std::uint16_t i = 0; i <= last; ++i)
        Check(worksheet_write_string(sheet_, header_row_, i, CellText(columns_[i].name).c_str(),
                                     formats_->header));
    worksheet_freeze_panes(sheet_, row_, 0);
    worksheet_repeat_rows(sheet_, header_row_, header_row_);
    worksheet_set_landscape(sheet_);
    worksheet_fit_to_pages(sheet_, 1, 0);
}

void WorkbookReport::SetTextRow()
{
    if (has_picture_rows_)
        Check(worksheet_set_row(sheet_, row_, kTextRowHeight, nullptr));
}

void WorkbookReport::EndSheet()
{
    if (row_ > header_row_ + 1)
        Check(worksheet_autofilter(sheet_, header_row_, 0, row_ - 1,
                                   static_cast<std::uint16_t>(columns_.size() - 1)));
}

void WorkbookReport::AddCell(std::uint16_t column, CellStyle style, std::string_view text, const Event& event)
{
    const auto write = [this, column, text](lxw_format* format) {
        if (!text.empty())
            Check(worksheet_write_string(sheet_, row_, column, CellText(text).c_str(), format));
    };
    switch (style) {
        case CellStyle::Number:
            Check(worksheet_write_number(sheet_, row_, column, static_cast<double>(rows_), formats_->number));
            return;
        case CellStyle::Percent:
            Check(worksheet_write_number(sheet_, row_, column, event.confidence, formats_->percent));
            return;
        case CellStyle::Level:
            Check(worksheet_write_number(sheet_, row_, column, event.level,
                                         formats_->levels[static_cast<std::size_t>(LevelOf(event) - 1)]));
            return;
        case CellStyle::Centred:
            return write(formats_->centred);
        case CellStyle::Wrapped:
            return write(formats_->wrapped);
        case CellStyle::Plain:
        case CellStyle::Picture:
            return write(formats_->plain);
    }
}

void WorkbookReport::AddPicture(const Event& event)
{
    const auto column = static_cast<std::uint16_t>(kReportColumns.size());
    std::string jpeg;
    if (mode_ == PictureMode::Embedded && pictures_added_ < kMostPictures)
        jpeg = Thumbnail(pictures_, event);
    if (jpeg.empty()) {
        AddCell(column, CellStyle::Picture, PictureAddress(event), event);
        return;
    }
    ++pictures_added_;
    std::string title = PictureAddress(event);
    lxw_image_options options{};
    options.x_scale = kPictureScale;
    options.y_scale = kPictureScale;
    options.x_offset = 1;
    options.y_offset = 1;
    options.description = title.data();
    Check(worksheet_insert_image_buffer_opt(
        sheet_, row_, column, reinterpret_cast<const unsigned char*>(jpeg.data()), jpeg.size(), &options));
}

void WorkbookReport::AddRow(const Event& event, const ReportRow& row)
{
    if (row_ >= kMostRows) {
        EndSheet();
        StartSheet();
    }
    if (rows_ % kRoomCheckRows == 0)
        CheckRoom();
    ++rows_;
    if (pictures_added_ >= kMostPictures)
        SetTextRow();
    for (std::size_t i = 0; i < kReportColumns.size(); ++i)
        AddCell(static_cast<std::uint16_t>(i), kReportColumns[i].style, row[i], event);
    if (mode_ != PictureMode::None)
        AddPicture(event);
    ++row_;
}

void WorkbookReport::Finish()
{
    EndSheet();
    CheckRoom();
    lxw_workbook* const book = book_;
    book_ = nullptr;
    Check(workbook_close(book));
}

void WorkbookReport::CheckRoom() const
{
    std::error_code error;
    const auto space = std::filesystem::space(folder_.empty() ? "." : path_.parent_path(), error);
    if (!error && space.available < kLeastRoom + kRoomOfRow * static_cast<std::uintmax_t>(rows_))
        throw StoreError("The disk has too little room for the workbook.");
}

void WorkbookReport::Check(int code) const
{
    if (code != LXW_NO_ERROR)
        throw StoreError(std::string("The workbook can't be written: ") +
                         lxw_strerror(static_cast<lxw_error>(code)));
}

}  // namespace Station
