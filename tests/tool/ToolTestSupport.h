// What the tool's unit tests share with the library's.
#pragma once

#include "mapping/MappingTestSupport.h"

namespace phonepim::tool {

using testing_support::ReadFile;
using TempFolder = testing_support::ScratchFolder;

}  // namespace phonepim::tool
