// What a capture holds in all, and what of it is damaged.
#pragma once

#include "capture/capturereader.h"

#include <functional>

struct CaptureSurvey
{
    // Lists are cut here, so that no file takes all memory; the counts go on.
    static constexpr int LIST_MAX = 1000;

    std::int64_t size = 0;
    std::int64_t good_end = 0; // all before this offset is good
    std::uint64_t section_count = 0;
    std::uint64_t port_count = 0;
    std::uint64_t record_count = 0;
    std::uint64_t damage_count = 0;
    std::uint64_t skipped_count = 0;
    std::uint64_t bytes_received = 0;
    std::uint64_t bytes_sent = 0;
    std::uint64_t bytes_lost = 0;
    std::int64_t first_ns = 0; // the earliest and the latest record
    std::int64_t last_ns = 0;
    QVector<PcapngSection> sections;
    QVector<PcapngInterface> ports; // of all sections
    QVector<CaptureDamage> damages;
    std::optional<CaptureDamage> torn_end;

    // Reads the device from start to end. `go_on` is asked at each block; a no ends it early.
    static CaptureSurvey of(QIODevice& device, const std::function<bool()>& go_on = {});

private:
    void count(const CaptureRecord& record);
    void count(const CaptureDamage& damage);
};
