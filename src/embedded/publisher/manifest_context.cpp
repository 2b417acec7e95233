#include "embedded/publisher/manifest_context.h"

#include "base/utf.h"

namespace corvina::publisher {

namespace {

constexpr std::size_t MostProblems = 1'000;

}  // namespace

void ManifestContext::Report(std::string_view problem, std::string_view subject) {
    if (problems_ != nullptr && problems_->size() < MostProblems) {
        problems_->push_back(WideFromUtf8(problem) + L": " + WideFromUtf8(subject));
    }
}

std::optional<std::wstring> ManifestContext::Copy(std::string_view text) {
    if (text.size() > charactersLeft_) {
        Report("The manifest's texts are too long", text.substr(0, 40));
        return std::nullopt;
    }
    charactersLeft_ -= text.size();
    return WideFromUtf8(text);
}

std::optional<std::wstring> ManifestContext::Message(pugi::xml_node node) {
    const pugi::xml_attribute reference = node.attribute("message");
    if (!reference) {
        return std::nullopt;
    }
    const std::optional<std::string_view> text = strings_.Resolve(reference.value());
    if (!text) {
        Report("No string for the message", reference.value());
        return std::nullopt;
    }
    return Copy(*text);
}

}  // namespace corvina::publisher
