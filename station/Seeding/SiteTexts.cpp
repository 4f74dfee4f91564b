#include "station/Seeding/SiteTexts.h"

#include <array>
#include <cstring>
#include <string_view>

namespace Station {
namespace {

constexpr std::array<CameraText, 12> kCameras = {{
    {"Gate North", "Main entrance, lane 1", "street"},
    {"Gate South", "Delivery entrance", "street"},
    {"Car Park East", "Visitors' car park", "parking"},
    {"Car Park West", "Staff car park", "parking"},
    {"Fence 1", "Perimeter, \"river\" side", "fence"},
    {"Fence 2", "Perimeter, rail side", "fence"},
    {"Reception", "Building A, ground floor", "hall"},
    {"Canteen", "Building A, 1st floor", "hall"},
    {"Corridor A2", "Building A, 2nd floor", "corridor"},
    {"Corridor B1", "Building B, 1st floor", "corridor"},
    {"Warehouse Aisle 3", "Building C, high racks", "warehouse"},
    {"Warehouse Aisle 9", "Building C, cold store", "warehouse"},
}};

constexpr std::array<std::string_view, 30> kPersons = {"Anna Kowalska",
                                                       "José Álvarez",
                                                       "Zoë Müller",
                                                       "O'Brien, Seán",
                                                       "Jean-Luc Lefèvre",
                                                       "Maria \"Mia\" Rossi",
                                                       "Łukasz Żak",
                                                       "Đorđe Petrović",
                                                       "Nguyễn Thị Hoa",
                                                       "İpek Yılmaz",
                                                       "Søren Ågård",
                                                       "王伟",
                                                       "李娜",
                                                       "欧阳明",
                                                       "張小龍",
                                                       "陈静, 保安",
                                                       "محمد علي",
                                                       "فاطمة الزهراء",
                                                       "عبد الرحمن بن خالد",
                                                       "ليلى حسن",
                                                       "Иван Петров",
                                                       "Ελένη Παπαδοπούλου",
                                                       "Visitor 👷",
                                                       "Night shift 🌙",
                                                       "Courier 📦",
                                                       "Family 👨‍👩‍👧",
                                                       "Dr. R. Patel",
                                                       "Smith, John Jr.",
                                                       "Hana Nováková",
                                                       "佐藤 花子"};

constexpr std::array<std::string_view, 9> kIntrusion = {
    "Person climbed the fence",
    "Door forced, alarm line 4 is open",
    "Somebody entered \"Zone B\" after closing time,\nguard sent",
    "Motion in a closed area; no badge was read",
    "有人翻越围栏，已通知保安",
    "شخص دخل المنطقة المحظورة، تم إبلاغ الحارس",
    "Window open, curtain moves\nNo person found",
    "Second alarm within 5 minutes, see event before",
    "🚨 Person in zone, calls the guard: +44 20 7946 0123"};
constexpr std::array<std::string_view, 6> kLoitering = {
    "Person waits for more than 3 minutes",     "Two persons talk at the entrance, one smokes",
    "Same person as yesterday, \"red jacket\"", "逗留超过五分钟",
    "يتسكع قرب البوابة منذ عشر دقائق",          "Waits for a taxi 🚕, no action needed"};
constexpr std::array<std::string_view, 5> kCrossing = {
    "Line 1 crossed from outside to inside", "Line 2 crossed, direction: out",
    "Crossed against the allowed direction,\nspeed 1.4 m/s", "越过警戒线", "Line 3, group of 2"};
constexpr std::array<std::string_view, 6> kVehicle = {"Plate on the allow list",
                                                      "Plate unknown, barrier stays closed",
                                                      "Delivery, 2 pallets, signed \"M. Weber\"",
                                                      "Vehicle leaves;\nstay 00:42",
                                                      "车辆进入，访客",
                                                      "شاحنة توصيل عند البوابة الجنوبية"};
constexpr std::array<std::string_view, 4> kFire = {
    "Smoke seen, fire brigade called", "Flames at the waste bin, put out by staff 🔥",
    "Heat source, false alarm: welding work, permit 2291", "检测到烟雾,\n已启动应急预案"};
constexpr std::array<std::string_view, 5> kFace = {
    "Known person, access granted", "On the watch list \"B\", please check",
    "Match below the limit, ask for the badge", "人脸匹配成功", "تم التعرف على الوجه"};
constexpr std::array<std::string_view, 4> kTampering = {
    "View covered", "Camera turned by 14 degrees, 2 screws loose",
    "Lens sprayed; cleaner ordered,\nticket #5512", "Image too dark for 60 s"};
constexpr std::array<std::string_view, 4> kCrowd = {"More than 8 persons in the area",
                                                    "Shift change, expected",
                                                    "Queue at the counter, 12 m long", "人群聚集，请注意"};
constexpr std::array<std::string_view, 4> kObject = {
    "Bag without an owner for 120 s", "Suitcase left; owner came back", "Box, \"fragile\", left at the door",
    "无人看管的行李 🧳"};
constexpr std::array<std::string_view, 4> kParking = {
    "Stands in the fire lane", "Two bays used, note left at the window", "Parked beyond 24 h,\nowner unknown",
    "=> reserved bay of car pool; see list"};

template <std::size_t N>
std::string_view PickText(Random& random, const std::array<std::string_view, N>& texts)
{
    return texts[static_cast<std::size_t>(random.Below(static_cast<int>(N)))];
}

std::string_view TextFor(Random& random, const std::string& type)
{
    if (type == "Intrusion")
        return PickText(random, kIntrusion);
    if (type == "Loitering")
        return PickText(random, kLoitering);
    if (type == "Line crossing")
        return PickText(random, kCrossing);
    if (type == "Vehicle")
        return PickText(random, kVehicle);
    if (type == "Fire")
        return PickText(random, kFire);
    if (type == "Face match")
        return PickText(random, kFace);
    if (type == "Camera tampering")
        return PickText(random, kTampering);
    if (type == "Crowd")
        return PickText(random, kCrowd);
    if (type == "Abandoned object")
        return PickText(random, kObject);
    return PickText(random, kParking);
}

}  // namespace

const CameraText& CameraTextOf(int index)
{
    return kCameras[static_cast<std::size_t>(index) % kCameras.size()];
}

std::string SomePerson(Random& random)
{
    return std::string(PickText(random, kPersons));
}

std::string SomePlate(Random& random)
{
    constexpr std::string_view kLetters = "ABCDEFGHJKLMNPRSTUVWXYZ";
    std::string plate;
    for (int i = 0; i < 2; ++i)
        plate += kLetters[static_cast<std::size_t>(random.Below(static_cast<int>(kLetters.size())))];
    plate += ' ';
    for (int i = 0; i < 3; ++i)
        plate += static_cast<char>('0' + random.Below(10));
    plate += ' ';
    for (int i = 0; i < 2; ++i)
        plate += kLetters[static_cast<std::size_t>(random.Below(static_cast<int>(kLetters.size())))];
    return plate;
}

std::string SomeText(Random& random, const std::string& type, const std::string& place)
{
    std::string text(TextFor(random, type));
    if (random.OneIn(4))
        text += " (" + place + ")";
    if (random.OneIn(7))
        text += ", operator " + SomePerson(random);
    return text;
}

}  // namespace Station
