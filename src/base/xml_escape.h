// Texts on their way into XML.
#pragma once

#include <string>
#include <string_view>

namespace corvina {

// Appends a text so that it stands for itself in XML: markup and the given quotation mark (' or ") become references,
// characters that XML cannot hold (control characters, half surrogates) the replacement character U+FFFD.
void AppendXmlEscaped(std::wstring_view text, wchar_t quotationMark, std::wstring& xml);

}  // namespace corvina
