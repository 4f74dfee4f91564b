#pragma once

#include "FetchyardLogical/RequestData.h"

#include <list>
#include <string>
#include <vector>

namespace FetchyardLogical {

// Appearance and kind of a cell.
struct CellFormat
{
    std::string font_family;  // CSS font family of a PDF title line
    int font_size = 0;        // points in a workbook, pixels in PDF title lines; 0 is the format's default
    bool is_blod = false;     // bold
    int text_location = 0;    // 0 left, 1 centre, 2 right
    std::string background_color;  // "#RRGGBB" or a colour name, empty for none
    std::string text_color;        // the same way
    bool is_need_wrap = false;     // wrap text
    int cell_type =
        0;  // 0, 1 text; 2 embedded picture; 3 linked picture; 4 validated text; 5 nothing; 6 hyperlink
    int column_width = 0;    // of a header cell, in characters; 0 or less is unset
    std::string valid_list;  // rule of the validation of cell_type 4
};

// One cell of a page.
struct ExportCell
{
    // work_station_id of a cell that leaves the choice to the page.
    static constexpr unsigned int kPageWorkStation = 0xFFFFFFFFu;

    std::string cell_name;   // the text; in a picture cell the picture's address
    std::string file_title;  // picture cells: stem of the file name, if not empty; hyperlinks: the text shown
    unsigned int work_station_id = kPageWorkStation;
    CellFormat cell_format;
};

// A merged range of title rows, zero-based.
struct ExportMergeRange
{
    int first_row = 0;
    int first_column = 0;
    int last_row = 0;
    int last_column = 0;
    std::string merge_text;
    CellFormat cell_format;
};

// One sheet of a page.
struct ExportSheet
{
    std::string sheet_name;
    std::vector<ExportCell> vec_titles;   // lines above the table, one cell each
    std::vector<ExportCell> vec_columns;  // headers, left to right
    std::vector<ExportMergeRange> vec_merges;
    int page_index = 0;  // number of the page; 1 starts the report
    std::vector<std::vector<ExportCell>> vec_rows;
};

// State of a report that the server generates itself.
struct ServerGenerateNode
{
    bool file_is_created = false;
    RequstData query_request;
    RequstData download_request;
    RequstData delete_cache_request;
    RequstData operate_request;
};

// One delivered page of a report.
struct ExportDataNode
{
    int export_file_type = 0;  // 0 Excel, 1 CSV, 2 PDF, 3 TXT
    std::string pdf_page_size = "A4";
    int pdf_page_orintation = 0;  // 0 landscape
    std::string file_name;        // stem of the report
    std::string file_save_path;   // folder of the report, with its final separator
    bool is_rowcolumn_data = true;
    bool file_total_page_is_finished = false;  // this is the last page
    unsigned int work_station_id = 0;
    std::vector<ExportSheet> vec_sheets;
    ServerGenerateNode server_genareate_node;
    std::string file_guid;
    std::list<std::string> file_url_list;
};

}  // namespace FetchyardLogical
