// The options at the end of a block's body, and its numbers. For pcapng.cpp; pcapng.h has the
// table.
#pragma once

#include "capture/pcapng.h"

#include <QtEndian>

// Numbers in a piece of a block, which is long enough for them.
struct PcapngFields
{
    const QByteArray& bytes;
    PcapngOrder order;

    std::uint16_t u16(int at) const { return number<quint16>(bytes.constData() + at); }
    std::uint32_t u32(int at) const { return number<quint32>(bytes.constData() + at); }
    std::uint64_t u64(int at) const { return number<quint64>(bytes.constData() + at); }

    template <typename Number> Number number(const char* from) const
    {
        return order == PcapngOrder::Little ? qFromLittleEndian<Number>(from)
                                            : qFromBigEndian<Number>(from);
    }
};

class PcapngOptions
{
public:
    static constexpr std::uint16_t COMMENT = 1;
    static constexpr int VALUE_MAX = 65535; // bytes; longer texts are cut at a character

    void add(std::uint16_t code, const QByteArray& value);
    void add_text(std::uint16_t code, const QString& text); // nothing for an empty one
    void add_texts(std::uint16_t code, const QStringList& texts);
    template <typename Number> void add_number(std::uint16_t code, Number number)
    {
        const Number little = qToLittleEndian(number);
        add(code, QByteArray(reinterpret_cast<const char*>(&little), sizeof little));
    }
    // With the end; nothing when there are none.
    QByteArray build() const;

    // All to the end of `bytes`, or to the option that ends them.
    static PcapngParsed<PcapngOptions> parse(const QByteArray& bytes, PcapngOrder order);
    QVector<QByteArray> values(std::uint16_t code) const;
    QString text(std::uint16_t code) const;
    QStringList texts(std::uint16_t code) const;
    // Nothing when it is missing or has another size.
    template <typename Number> std::optional<Number> number(std::uint16_t code) const
    {
        for (const QByteArray& value : values(code))
            if (value.size() == int(sizeof(Number)))
                return PcapngFields{value, order}.number<Number>(value.constData());
        return std::nullopt;
    }

private:
    struct Option
    {
        std::uint16_t code;
        QByteArray value;
    };

    QVector<Option> options;
    PcapngOrder order = PcapngOrder::Little;
};
