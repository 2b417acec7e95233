// The names of stored filters' files. They are made of what users call their filters and come back out of settings that
// anybody can edit, so they must never mean a device, a stream or a file of another folder.
#pragma once

#include <string>
#include <string_view>

namespace corvina {

inline constexpr std::wstring_view StoredFilterExtension = L".xml";

// Whether the name means a plain file in the folder in which it is looked up, on every system: no part of a path, no
// device ("NUL.xml", "COM1"), no stream of a file ("a:b"), nothing that Windows would take off ("a.").
bool IsPlainFileName(std::wstring_view name);

// A plain file name for a filter: its name without what a file's name cannot hold, cut to some 60 characters, with the
// number before the extension unless it is 1 ("Logons.xml", "Logons 2.xml").
std::wstring StoredFilterFileName(std::wstring_view filterName, unsigned number);

}  // namespace corvina
