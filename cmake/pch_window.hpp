// Precompiled for the window code.
#pragma once

#include <QtWidgets/QtWidgets>

#include "pch.hpp"
