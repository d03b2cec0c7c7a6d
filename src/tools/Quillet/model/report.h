// The model's soft check: when a condition fails, the person is told in a box captioned
// "Error", and the caller goes on.
#pragma once

#include <string>

void ReportUnless(bool condition, const std::string& text);

// A box with the stop icon and OK, when there is anyone to see it.
void ShowStop(const std::string& text, const std::string& caption);

// A record that lookups hand out when nothing was found: fresh on every use, so a caller
// that goes on after the report never touches a record of the project.
template <typename Record>
Record& EmptyRecord() {
    static Record empty;
    empty = Record();
    return empty;
}
