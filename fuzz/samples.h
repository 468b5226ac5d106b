// The sample types of the tests. Their headers expect GoogleTest's macros.
#pragma once

#include <gtest/gtest.h>

#include "tests/binding/binding_samples.h"
