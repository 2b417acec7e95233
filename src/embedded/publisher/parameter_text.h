// Parameters of messages: values of events that stand for a text ("%%1842").
#pragma once

#include <string>

#include "embedded/publisher/publisher_manifest.h"

namespace corvina::publisher {

// Replaces each "%%" with a number by the provider's text of that number: its parameter file's, otherwise its own. What
// has no text stays as it is. To be used on a message whose values are filled in already. The result ends after 16 Mi
// characters.
void ExpandParameters(const Publisher& publisher, std::wstring& text);

}  // namespace corvina::publisher
