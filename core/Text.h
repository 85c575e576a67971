#pragma once
// Character tests on single bytes of Latin-1 text, the game's character set.

// Blank, form feed, line feed, carriage return, tab, vertical tab and 0xA0.
bool isSpace(char Character);
// A to Z, a to z and the Latin-1 letters ä, ö, ü, Ä, Ö, Ü, ß.
bool isLetter(char Character);
// A to Z and 0xC0 to 0xDE lowered by 32, others as they are.
char toLowerChar(char Character);
