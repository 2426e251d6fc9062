// Precompiled for the command line.
#pragma once

#include <nlohmann/json.hpp>

#include "pch.hpp"
