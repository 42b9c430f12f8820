#include "capture/capturesurvey.h"

#include <algorithm>

namespace {
template <typename Value> void append_some(QVector<Value>& list, const Value& value)
{
    if (list.size() < CaptureSurvey::LIST_MAX)
        list.append(value);
}
} // namespace

CaptureSurvey CaptureSurvey::of(QIODevice& device, const std::function<bool()>& go_on)
{
    CaptureSurvey survey;
    survey.size = device.size();
    survey.good_end = survey.size;
    CaptureReader reader(device);
    while (!go_on || go_on()) {
        switch (reader.next()) {
        case CaptureReader::Found::Section:
            ++survey.section_count;
            append_some(survey.sections, reader.section());
            break;
        case CaptureReader::Found::Port:
            ++survey.port_count;
            append_some(survey.ports, reader.ports().last());
            break;
        case CaptureReader::Found::Record:
            survey.count(reader.record());
            break;
        case CaptureReader::Found::Damage:
            survey.count(reader.damage());
            break;
        case CaptureReader::Found::End:
            survey.skipped_count = reader.skipped();
            return survey;
        }
    }
    return survey;
}

void CaptureSurvey::count(const CaptureRecord& record)
{
    first_ns = record_count == 0 ? record.time_ns : std::min(first_ns, record.time_ns);
    last_ns = std::max(last_ns, record.time_ns);
    ++record_count;
    bytes_lost += record.lost;
    if (record.event == CaptureEvent::DataReceived)
        bytes_received += std::uint64_t(record.bytes.size());
    if (record.event == CaptureEvent::DataSent)
        bytes_sent += std::uint64_t(record.bytes.size());
}

void CaptureSurvey::count(const CaptureDamage& damage)
{
    if (damage_count++ == 0)
        good_end = damage.offset;
    append_some(damages, damage);
    if (damage.kind == CaptureDamage::Kind::TornEnd)
        torn_end = damage;
}
