// How the commands name one object of a file in their messages, so that a
// person can find it: "FILE: object 2 (line 5, "BEGIN:VCARD")".
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include <phonepim/versit/ObjectSplitter.h>

namespace phonepim::tool {

/// Appends `utf8` with line ends, tabs and other control characters escaped
/// ("\r", "\n", "\t", "\x1B"), so that it stays on one line.
void AppendVisible(std::string& line, std::string_view utf8);

/// "SOURCE: object N (line L, "FIRST LINE")", the first line cut to 60 bytes
/// and made visible; `index` counts from 0.
std::string ObjectHeading(const std::string& sourceName, std::size_t index,
                          const VersitObjectSpan& span, std::string_view object);

/// "SOURCE: object N (line L)", for messages that need no first line.
std::string ShortObjectHeading(const std::string& sourceName, std::size_t index,
                               const VersitObjectSpan& span);

/// "1 object", "2 objects": `count` and `noun`, with an "s" unless it is 1.
std::string Counted(std::size_t count, const std::string& noun);

}  // namespace phonepim::tool
