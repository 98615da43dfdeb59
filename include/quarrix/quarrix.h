#pragma once
// Everything public of Quarrix in one include. Applications write `using namespace quarrix;` once.

// framework: the portable stand-ins for MFC and Win32
#include <quarrix/framework/CArchive.h>
#include <quarrix/framework/CArray.h>
#include <quarrix/framework/CDumpContext.h>
#include <quarrix/framework/CException.h>
#include <quarrix/framework/CFile.h>
#include <quarrix/framework/CList.h>
#include <quarrix/framework/CMap.h>
#include <quarrix/framework/CMemFile.h>
#include <quarrix/framework/CObject.h>
#include <quarrix/framework/CStdioFile.h>
#include <quarrix/framework/CString.h>
#include <quarrix/framework/CTime.h>
#include <quarrix/framework/CodePage.h>
#include <quarrix/framework/CollectionHelpers.h>
#include <quarrix/framework/Format.h>
#include <quarrix/framework/LastError.h>
#include <quarrix/framework/MessageBox.h>
#include <quarrix/framework/NativePath.h>
#include <quarrix/framework/Trace.h>
#include <quarrix/framework/TypedCollections.h>
#include <quarrix/framework/Types.h>
#include <quarrix/framework/Unicode.h>
#include <quarrix/framework/Version.h>

// regex: regular expressions
#include <quarrix/regex/CRegex.h>

// foundation: exceptions, helpers, logging, stopwatch, command line
#include <quarrix/foundation/CBaseException.h>
#include <quarrix/foundation/CSerializeException.h>
#include <quarrix/foundation/CCommandLine.h>
#include <quarrix/foundation/CLogger.h>
#include <quarrix/foundation/CTimer.h>
#include <quarrix/foundation/MathHelpers.h>
#include <quarrix/foundation/StringTools.h>
#include <quarrix/foundation/SystemError.h>
#include <quarrix/foundation/TextHelpers.h>
#include <quarrix/foundation/TimeTools.h>

// collections: serializable collections
#include <quarrix/collections/CIntArray.h>
#include <quarrix/collections/CIntList.h>
#include <quarrix/collections/CIntListArray.h>
#include <quarrix/collections/CIntToIntListMap.h>
#include <quarrix/collections/CMapIntToDouble.h>
#include <quarrix/collections/CMapIntToInt.h>
