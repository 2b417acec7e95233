// Writes the instrumentation manifests of the sample providers.
#pragma once

#include <string>

#include "embedded/samples/sample_catalog.h"

namespace corvina::samples {

// The manifest as UTF-8 text, in the platform's published event manifest schema.
std::string ManifestText(const SampleProvider& provider);

}  // namespace corvina::samples
