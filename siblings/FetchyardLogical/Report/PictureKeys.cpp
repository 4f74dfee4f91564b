#include "Report/PictureKeys.h"

#include <string>

using ZellPictureLoader::CImgUrlKey;

namespace FetchyardLogical::details {

namespace {

constexpr int kTextReport = 3;
constexpr int kEmbeddedPicture = 2;
constexpr int kLinkedPicture = 3;
constexpr int kOrdinaryAddress = 1;
// Stands in the address of a device's picture, which is never cached.
constexpr char kDeviceMark[] = "QUERN";

bool IsCacheable(const std::string& address)
{
    return !address.empty() && address.find(kDeviceMark) == std::string::npos;
}

bool IsCacheablePicture(const ExportCell& cell)
{
    const int type = cell.cell_format.cell_type;
    return (type == kEmbeddedPicture || type == kLinkedPicture) && IsCacheable(cell.cell_name);
}

std::shared_ptr<CImgUrlKey> KeyOf(const std::string& address)
{
    const std::size_t mark = address.find('?');
    auto key = std::make_shared<CImgUrlKey>();
    key->SetValurl_type(static_cast<CImgUrlKey::Type>(kOrdinaryAddress));
    key->SetValstrImageUrl(address);
    key->SetValstr_request(mark == std::string::npos ? address : address.substr(mark + 1));
    key->SetValb_save_cache(true);
    return key;
}

std::shared_ptr<CImgUrlKey> KeyOf(const ExportCell& cell, unsigned int page_station)
{
    auto key = KeyOf(cell.cell_name);
    key->SetValidWorkStation(cell.work_station_id == ExportCell::kPageWorkStation ? page_station
                                                                                  : cell.work_station_id);
    return key;
}

}  // namespace

std::vector<std::shared_ptr<CImgUrlKey>> PictureKeys(const ExportDataNode& page)
{
    std::vector<std::shared_ptr<CImgUrlKey>> keys;
    if (page.export_file_type == kTextReport)
        return keys;
    for (const ExportSheet& sheet : page.vec_sheets)
        for (const std::vector<ExportCell>& row : sheet.vec_rows)
            for (const ExportCell& cell : row)
                if (IsCacheablePicture(cell))
                    keys.push_back(KeyOf(cell, page.work_station_id));
    return keys;
}

std::vector<std::shared_ptr<CImgUrlKey>> PictureKeys(const std::vector<PersonPicture>& pictures)
{
    std::vector<std::shared_ptr<CImgUrlKey>> keys;
    for (const PersonPicture& picture : pictures)
        if (IsCacheable(picture.url))
            keys.push_back(KeyOf(picture.url));
    return keys;
}

}  // namespace FetchyardLogical::details
