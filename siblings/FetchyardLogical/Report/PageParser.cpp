#include "Report/PageParser.h"

#include "Report/JsonReading.h"
#include "ZellNetLinkHost/HttpClient.h"

#include <cstddef>
#include <cstdint>
#include <string_view>

using Zell::Base::Error::ErrorCode;

namespace FetchyardLogical::details {

namespace {

bool ReadFormat(od::value& value, CellFormat& format)
{
    return ReadObject(value, [&format](od::raw_json_string name, od::value& member) {
        if (name == "FontFamily")
            return ReadText(member, format.font_family);
        if (name == "FontSize")
            return ReadNumber(member, format.font_size);
        if (name == "IsBold")
            return ReadFlag(member, format.is_blod);
        if (name == "TextLocation")
            return ReadNumber(member, format.text_location);
        if (name == "BackgroundColor")
            return ReadText(member, format.background_color);
        if (name == "TextColor")
            return ReadText(member, format.text_color);
        if (name == "IsNeedWrap")
            return ReadFlag(member, format.is_need_wrap);
        if (name == "CellType")
            return ReadNumber(member, format.cell_type);
        if (name == "ColumnWidth")
            return ReadNumber(member, format.column_width);
        if (name == "ValidList")
            return ReadText(member, format.valid_list);
        return true;
    });
}

// Reads one sheet. Cells are given their formats as they are read. Where cells stand in front of "Formats",
// all cells are passed over at first and read in a second walk; the usual order needs only one. No text is
// ever read twice: the parser's memory for unescaped texts is made for one reading of each.
class SheetReader
{
public:
    explicit SheetReader(ExportSheet& sheet) : sheet_(sheet) {}

    bool Read(od::value& value)
    {
        od::object object;
        if (value.get_object().get(object) != simdjson::SUCCESS)
            return false;
        if (!ForEachMember(object, [this](od::raw_json_string name, od::value& member) {
                return ReadMember(name, member);
            }))
            return false;
        return (!cells_passed_over_ || ReadCellsAgain(object)) && sheet_.page_index >= 1;
    }

private:
    bool ReadMember(od::raw_json_string name, od::value& member)
    {
        if (name == "SheetName")
            return ReadText(member, sheet_.sheet_name);
        if (name == "PageIndex")
            return ReadNumber(member, sheet_.page_index);
        if (name == "Formats")
            return ReadFormats(member);
        if (!IsCellMember(name))
            return true;
        cells_passed_over_ = cells_passed_over_ || !formats_known_;
        return cells_passed_over_ || ReadCellMember(name, member);
    }

    bool ReadCellsAgain(od::object& object)
    {
        bool is_empty = false;
        if (object.reset().get(is_empty) != simdjson::SUCCESS)
            return false;
        return ForEachMember(object, [this](od::raw_json_string name, od::value& member) {
            return !IsCellMember(name) || ReadCellMember(name, member);
        });
    }

    static bool IsCellMember(od::raw_json_string name)
    {
        return name == "Rows" || name == "Titles" || name == "Columns" || name == "Merges";
    }

    bool ReadCellMember(od::raw_json_string name, od::value& member)
    {
        if (name == "Rows")
            return ReadRows(member);
        if (name == "Titles")
            return ReadCells(member, sheet_.vec_titles);
        if (name == "Columns")
            return ReadCells(member, sheet_.vec_columns);
        return ReadList(member, [this](od::value& merge) { return ReadMerge(merge); });
    }

    bool ReadFormats(od::value& member)
    {
        formats_known_ = true;
        return ReadList(member, [this](od::value& format) {
            formats_.emplace_back();
            return ReadFormat(format, formats_.back());
        });
    }

    // A row is about as wide as the one before.
    bool ReadRows(od::value& member)
    {
        std::size_t width = sheet_.vec_columns.size();
        return ReadList(member, [this, &width](od::value& row) {
            std::vector<ExportCell>& cells = sheet_.vec_rows.emplace_back();
            cells.reserve(width);
            if (IsNull(row) || !ReadCells(row, cells))
                return false;
            width = cells.size();
            return true;
        });
    }

    bool ReadCells(od::value& member, std::vector<ExportCell>& cells)
    {
        return ReadList(member,
                        [this, &cells](od::value& cell) { return ReadCell(cell, cells.emplace_back()); });
    }

    bool ReadCell(od::value& value, ExportCell& cell)
    {
        std::string_view text;
        if (value.get_string().get(text) == simdjson::SUCCESS) {
            cell.cell_name = std::string(text);
            return true;
        }
        od::object object;
        if (value.get_object().get(object) != simdjson::SUCCESS)
            return false;
        bool has_text = false;
        return ForEachMember(object,
                             [&](od::raw_json_string name, od::value& member) {
                                 if (name == "Text") {
                                     has_text = !IsNull(member);
                                     return ReadText(member, cell.cell_name);
                                 }
                                 if (name == "Format")
                                     return ReadFormatIndex(member, cell.cell_format);
                                 if (name == "Title")
                                     return ReadText(member, cell.file_title);
                                 if (name == "Site")
                                     return ReadNumber(member, cell.work_station_id);
                                 return true;
                             }) &&
               has_text;
    }

    bool ReadFormatIndex(od::value& member, CellFormat& format)
    {
        std::uint64_t index = 0;
        if (member.get_uint64().get(index) != simdjson::SUCCESS)
            return IsNull(member);
        if (index >= formats_.size())
            return false;
        format = formats_[static_cast<std::size_t>(index)];
        return true;
    }

    bool ReadMerge(od::value& value)
    {
        ExportMergeRange& merge = sheet_.vec_merges.emplace_back();
        merge.first_row = merge.first_column = merge.last_row = merge.last_column = -1;
        const bool read = ReadObject(value, [this, &merge](od::raw_json_string name, od::value& member) {
            if (name == "FirstRow")
                return ReadNumber(member, merge.first_row);
            if (name == "FirstColumn")
                return ReadNumber(member, merge.first_column);
            if (name == "LastRow")
                return ReadNumber(member, merge.last_row);
            if (name == "LastColumn")
                return ReadNumber(member, merge.last_column);
            if (name == "Text")
                return ReadText(member, merge.merge_text);
            if (name == "Format")
                return ReadFormatIndex(member, merge.cell_format);
            return true;
        });
        return read && merge.first_row >= 0 && merge.first_column >= 0 && merge.last_row >= merge.first_row &&
               merge.last_column >= merge.first_column;
    }

    ExportSheet& sheet_;
    std::vector<CellFormat> formats_;
    bool formats_known_ = false;
    bool cells_passed_over_ = false;
};

bool ReadRequest(od::value& value, RequstData& request)
{
    return ReadObject(value, [&request](od::raw_json_string name, od::value& member) {
        if (name == "Method")
            return ReadText(member, request.str_method);
        if (name == "Api")
            return ReadText(member, request.str_quern);
        if (name == "Request")
            return ReadText(member, request.str_request);
        if (name == "SiteId")
            return ReadNumber(member, request.site_id);
        if (name == "Pattern")
            return ReadNumber(member, request.pattern);
        if (name == "TaskId")
            return ReadText(member, request.task_id);
        if (name == "PdfPageSize")
            return ReadText(member, request.pdf_page_size);
        if (name == "PdfPageOrientation")
            return ReadNumber(member, request.pdf_page_orintation);
        return true;
    });
}

// The task's number may stand once for all four requests.
bool ReadServerGenerate(od::value& value, int site, ServerGenerateNode& node)
{
    RequstData* const requests[] = {&node.query_request, &node.download_request, &node.delete_cache_request,
                                    &node.operate_request};
    for (RequstData* request : requests)
        request->site_id = site;
    std::string task_id;
    const bool read = ReadObject(value, [&](od::raw_json_string name, od::value& member) {
        if (name == "FileIsCreated")
            return ReadFlag(member, node.file_is_created);
        if (name == "TaskId")
            return ReadText(member, task_id);
        if (name == "Query")
            return ReadRequest(member, node.query_request);
        if (name == "Download")
            return ReadRequest(member, node.download_request);
        if (name == "DeleteCache")
            return ReadRequest(member, node.delete_cache_request);
        if (name == "Operate")
            return ReadRequest(member, node.operate_request);
        return true;
    });
    for (RequstData* request : requests)
        if (request->task_id.empty())
            request->task_id = task_id;
    return read;
}

class AnswerReader
{
public:
    AnswerReader(int site, ReportPage& page) : site_(site), page_(page) {}

    bool Read(od::object& answer)
    {
        return ForEachMember(
            answer, [this](od::raw_json_string name, od::value& member) { return ReadMember(name, member); });
    }

    ErrorCode Failure() const { return failure_; }

    bool IsComplete() const
    {
        return page_.is_rowcolumn_data ? has_sheets_ && has_last_ : has_server_generate_;
    }

private:
    bool ReadMember(od::raw_json_string name, od::value& member)
    {
        if (name == "ErrorModule")
            return ReadNumber(member, failure_.iFirstCode);
        if (name == "ErrorCode")
            return ReadNumber(member, failure_.iSecondCode);
        if (name == "IsRowColumnData")
            return ReadFlag(member, page_.is_rowcolumn_data);
        if (name == "TotalPageIsFinished") {
            has_last_ = !IsNull(member);
            return ReadFlag(member, page_.is_last);
        }
        if (name == "Sheets") {
            has_sheets_ = !IsNull(member);
            return ReadList(member, [this](od::value& sheet) {
                return SheetReader(page_.sheets.emplace_back()).Read(sheet);
            });
        }
        if (name == "ServerGenerate") {
            has_server_generate_ = !IsNull(member);
            return ReadServerGenerate(member, site_, page_.server);
        }
        return true;
    }

    const int site_;
    ReportPage& page_;
    ErrorCode failure_;
    bool has_last_ = false;
    bool has_sheets_ = false;
    bool has_server_generate_ = false;
};

}  // namespace

ErrorCode ParseReportPage(std::string& body, int site, ReportPage& page)
{
    AnswerReader reader(site, page);
    const bool read = ReadJson(body, [&reader](od::object& answer) { return reader.Read(answer); });
    const ErrorCode failure = reader.Failure();
    if (read && (failure.iFirstCode != 0 || failure.iSecondCode != 0))
        return failure;
    if (read && reader.IsComplete())
        return ErrorCode();
    return ErrorCode(2, ZellNetLink::kModuleAnswer, ZellNetLink::AnswerNotUnderstood);
}

}  // namespace FetchyardLogical::details
