// Manifests for the tests, written around what a test is about.
#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "embedded/publisher/publisher_manifest.h"

namespace corvina::publisher {

// A manifest with one provider: its content, and the string elements of the culture en-US.
inline std::string ManifestText(std::string_view name, std::string_view content, std::string_view strings = "") {
    std::string text = R"(<instrumentationManifest xmlns="http://schemas.microsoft.com/win/2004/08/events">)"
                       R"(<instrumentation><events><provider guid="{1C2D3E4F-0011-2233-4455-66778899AABB}" name=")";
    text += name;
    text += "\">";
    text += content;
    text += R"(</provider></events></instrumentation>)"
            R"(<localization><resources culture="en-US"><stringTable>)";
    text += strings;
    text += "</stringTable></resources></localization></instrumentationManifest>";
    return text;
}

inline std::vector<Publisher> Read(std::string_view text, std::vector<std::wstring>* problems = nullptr) {
    return ReadManifest(std::as_bytes(std::span(text)), problems);
}

}  // namespace corvina::publisher
