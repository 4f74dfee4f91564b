#include "station/Report/SyntheticReport.h"

#include "station/Report/Condition.h"

#include <nlohmann/json.hpp>

#include <algorithm>

namespace Station {
namespace {

constexpr std::size_t kMostShapes = 8;
constexpr std::int64_t kMostRows = 1000000000;
constexpr std::int64_t kMostColumns = 16384;
constexpr std::int64_t kMostPictures = 16;
constexpr std::int64_t kMostCellsOfPage = 1000000;
constexpr std::int64_t kMostPages = 2147483647;
constexpr char kPictureFormats[] = R"("Formats":[{"CellType":3}],)";

std::string CellText(std::int64_t row, std::int64_t column)
{
    switch (column % 5) {
        case 0:
            return std::to_string(row + 1);
        case 1:
            return "2026-01-31 09:" + std::to_string(10 + row % 50) + ":" + std::to_string(10 + row % 47);
        case 2:
            return "Camera " + std::to_string(row % 12 + 1);
        case 3:
            return "Hall East, gate " + std::to_string(row % 7 + 1);
        default:
            return "Person seen " + std::to_string(row % 90 + 10) + " %";
    }
}

}  // namespace

std::shared_ptr<const SyntheticReports::Rendered> SyntheticReports::Draw(const Shape& shape)
{
    auto drawn = std::make_shared<Rendered>();
    drawn->shape = shape;
    drawn->head = R"("Titles":["Synthetic report"],"Columns":[)";
    for (std::int64_t column = 0; column < shape.columns + shape.pictures; ++column)
        drawn->head += (column == 0 ? "\"Column " : ",\"Column ") + std::to_string(column + 1) + "\"";
    drawn->head += "],";
    std::string part;
    for (std::int64_t row = 0; row < shape.page_size; ++row) {
        part += row == 0 ? "[" : ",[";
        for (std::int64_t column = 0; column < shape.columns; ++column)
            part += (column == 0 ? "\"" : ",\"") + CellText(row, column) + "\"";
        for (std::int64_t picture = 0; picture < shape.pictures; ++picture) {
            part += R"(,{"Text":"/synthetic/pictures/)";
            drawn->parts.push_back(std::move(part));
            part = "-" + std::to_string(row + 1) + "-" + std::to_string(picture + 1) + R"(.jpg","Format":0})";
        }
        part += "]";
    }
    drawn->parts.push_back(std::move(part));
    for (const std::string& each : drawn->parts)
        drawn->bytes += each.size() + 10;
    return drawn;
}

std::shared_ptr<const SyntheticReports::Rendered> SyntheticReports::Get(const Shape& shape)
{
    // Under the lock: whoever asks for the same page at once waits instead of rendering it as well.
    const std::lock_guard<std::mutex> lock(mutex_);
    const auto known = std::find_if(rendered_.begin(), rendered_.end(),
                                    [&shape](const auto& entry) { return entry->shape == shape; });
    if (known != rendered_.end())
        return *known;
    if (rendered_.size() >= kMostShapes)
        rendered_.erase(rendered_.begin());
    rendered_.push_back(Draw(shape));
    return rendered_.back();
}

bool SyntheticReports::Render(const nlohmann::json& condition, std::string& answer, std::string& reason)
{
    std::int64_t page = 1;
    std::int64_t rows = 1000000;
    Shape shape{1000, 10, 0};
    if (!condition.is_object()) {
        reason = "The condition must be an object.";
        return false;
    }
    if (!ReadNumber(condition, "PageIndex", 1, kMostPages, page, reason) ||
        !ReadNumber(condition, "PageSize", 1, kMostRowsOfPage, shape.page_size, reason) ||
        !ReadNumber(condition, "Rows", 0, kMostRows, rows, reason) ||
        !ReadNumber(condition, "Columns", 1, kMostColumns, shape.columns, reason) ||
        !ReadNumber(condition, "Pictures", 0, kMostPictures, shape.pictures, reason))
        return false;
    if (shape.page_size * (shape.columns + shape.pictures) > kMostCellsOfPage) {
        reason = "A page may have " + std::to_string(kMostCellsOfPage) + " cells at most.";
        return false;
    }
    const std::int64_t before = (page - 1) * shape.page_size;
    const bool is_last = before + shape.page_size >= rows;
    shape.page_size = std::clamp<std::int64_t>(rows - before, 0, shape.page_size);
    const auto drawn = Get(shape);
    const std::string number = std::to_string(page);
    answer.clear();
    answer.reserve(512 + drawn->head.size() + drawn->bytes);
    answer += R"({"ErrorModule":0,"ErrorCode":0,"IsRowColumnData":true,"TotalPageIsFinished":)";
    answer += is_last ? "true" : "false";
    answer += R"(,"Sheets":[{"SheetName":"Synthetic","PageIndex":)" + number + ",";
    if (shape.pictures > 0)
        answer += kPictureFormats;
    if (page == 1)
        answer += drawn->head;
    answer += "\"Rows\":[";
    for (std::size_t i = 0; i < drawn->parts.size(); ++i) {
        if (i > 0)
            answer += number;
        answer += drawn->parts[i];
    }
    answer += "]}]}";
    return true;
}

}  // namespace Station
