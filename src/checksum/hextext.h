// Bytes to hexadecimal text and back.
#pragma once

#include <QString>

// Upper-case pairs split by one blank, as in 01 AB FF: nbytes * 3 - 1 characters. An empty string
// when nbytes is 0 or less, a null one when data is null.
QString hex_text(const void* data, int nbytes);

// The value of a digit of either case, or -1.
int hex_digit(char c);

// Writes the bytes that the textlen characters mean, two characters a byte, to out, which
// holds outsize bytes; textlen is even. Returns the number of bytes written. Returns 0, with
// nothing written, when text or out is null or out is too small. The characters are not examined:
// what strtoul makes of a pair is written.
int hex_to_bytes(const char* text, int textlen, void* out, int outsize);
