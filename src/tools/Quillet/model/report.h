// The model's soft check: when a condition fails, the person is told in a box captioned
// "Error", and the caller goes on.
#pragma once

#include <string>

void ReportUnless(bool condition, const std::string& text);

// A record that lookups hand out when nothing was found: fresh on every use, so a caller
// that goes on after the report never touches a record of the project.
template <typename Record>
Record& EmptyRecord() {
    static Record empty;
    empty = Record();
    return empty;
}
