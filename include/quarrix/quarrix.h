#pragma once
// Everything public of Quarrix in one include. Applications write `using namespace quarrix;` once.

// framework: the portable stand-ins for MFC and Win32
#include <quarrix/framework/CException.h>
#include <quarrix/framework/CString.h>
#include <quarrix/framework/CTime.h>
#include <quarrix/framework/CodePage.h>
#include <quarrix/framework/Format.h>
#include <quarrix/framework/LastError.h>
#include <quarrix/framework/MessageBox.h>
#include <quarrix/framework/NativePath.h>
#include <quarrix/framework/Trace.h>
#include <quarrix/framework/Types.h>
#include <quarrix/framework/Unicode.h>
#include <quarrix/framework/Version.h>

// regex: regular expressions
#include <quarrix/regex/CRegex.h>

// foundation: helpers, logging, stopwatch, command line
#include <quarrix/foundation/CCommandLine.h>
#include <quarrix/foundation/CLogger.h>
#include <quarrix/foundation/CTimer.h>
#include <quarrix/foundation/MathHelpers.h>
#include <quarrix/foundation/StringTools.h>
#include <quarrix/foundation/SystemError.h>
#include <quarrix/foundation/TextHelpers.h>
#include <quarrix/foundation/TimeTools.h>
