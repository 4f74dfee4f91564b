#pragma once

#include <QObject>
#include <QTimer>

#include <cstdint>
#include <memory>
#include <string>

namespace FetchyardClient {

// Asks a station now and then whether it answers, for as long as somebody wants to know. The transfer runs on
// a thread of its own; everything else on the window's.
class StationLook final : public QObject
{
    Q_OBJECT

public:
    explicit StationLook(QObject* parent);
    ~StationLook() override;

    // The station to look at from now on, as "http://host:port"; asks at once. Empty: none any more.
    void LookAt(const std::string& address);

signals:
    // Whether it answers; words: what is wrong if not.
    void Seen(bool answers, const QString& words);

private:
    void Ask();
    void Hear(std::uint64_t round, int module, int code);

    // The way back from the transfer's thread, cut when the one who asked goes.
    struct Link;
    std::shared_ptr<Link> link_;
    QTimer again_;
    std::string address_;
    std::uint64_t round_ = 0;
};

}  // namespace FetchyardClient
