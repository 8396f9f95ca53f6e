#pragma once

#include <string>
#include <string_view>

#include "metrics/MetricsSnapshot.h"

namespace trotlet::processes {

// What the search field asks for, prepared once per keystroke: a process matches when its name
// or executable path contains the text (ignoring ASCII case), or when the text is a number its
// PID starts with. Surrounding spaces do not count; an empty query matches everything.
class ProcessQuery {
public:
    ProcessQuery() = default;
    explicit ProcessQuery(std::string_view text);

    bool empty() const { return needle_.empty(); }
    const std::string& text() const { return text_; }
    bool matches(const metrics::ProcessRow& row) const;

private:
    std::string text_;       // as typed, trimmed
    std::string needle_;     // lower case
    std::string pidPrefix_;  // the text when it is all digits
};

}  // namespace trotlet::processes
