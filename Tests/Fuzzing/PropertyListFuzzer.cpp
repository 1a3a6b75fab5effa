// SPDX-License-Identifier: MIT
#include "Fuzzing.h"

#include <PropertyList.h>

// Any bytes can be read as a property list, or are refused.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    Fuzzing::silenceLog();
    const Fuzzing::Input input(data, size);
    const auto list = propertyListFromXml(input.text());
    Fuzzing::require(list || !list.error().message.isEmpty(), "a refusal says why");
    return 0;
}
