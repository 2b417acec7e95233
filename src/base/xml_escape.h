// Texts on their way into XML.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace corvina {

// Appends a text so that it stands for itself in XML: markup and the given quotation mark (' or ") become references,
// characters that XML cannot hold (control characters, half surrogates) the replacement character U+FFFD.
void AppendXmlEscaped(std::wstring_view text, wchar_t quotationMark, std::wstring& xml);

// Whether XML can hold the character at `index`: no control character but tab and line ends, no half surrogate, neither
// U+FFFE nor U+FFFF.
bool CanStandInXml(std::wstring_view text, std::size_t index);

}  // namespace corvina
