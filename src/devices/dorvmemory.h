// The settings that a Dorv module remembers, in a file if one is given.
#pragma once

#include <QByteArray>
#include <QMap>
#include <QString>
#include <optional>

class DorvMemory
{
public:
    // A missing file is made at the first change. Throws std::runtime_error, with a text for the
    // user, when the file can't be read or holds what the module does not know, and when it can't
    // be written later.
    explicit DorvMemory(const QString& path = {});

    // False when there is no such setting, or the value does not fit it.
    bool set(const QByteArray& name, const QByteArray& value);
    // What the module answers to "at+name=?" with `access` after the question mark; empty when
    // there is no such setting or not everybody may read it.
    std::optional<QByteArray> told(const QByteArray& name, const QByteArray& access) const;
    QByteArray value(const QByteArray& name) const { return values.value(name); }
    void reset_to_factory();

private:
    bool accept(const QByteArray& name, const QByteArray& value);
    void load();
    void store() const;

    QString path;
    QMap<QByteArray, QByteArray> values;
};
