// An exchange as one line of text.
//
//   > 64 00 00 00 00      bytes that went out
//   < 64 00               bytes that came; text, as in AT commands, as text too
//   < nothing in time
#pragma once

#include <QByteArray>
#include <QString>

QString sent_text(const QByteArray& bytes, int result);
QString received_text(const QByteArray& bytes, int result);
QString note_text(const QString& text);
