// Precompiled for the window tests; sources still include what they use.
#pragma once

#include <QTest>
#include <QtWidgets/QtWidgets>

#include "../../cmake/pch.hpp"
