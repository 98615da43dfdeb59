#pragma once
// Dates and time stamps in local time.
#include <quarrix/framework/CString.h>
#include <quarrix/framework/CTime.h>
#include <quarrix/framework/Export.h>

namespace quarrix {

// The local time *pTime (the current time when pTime is null) as "%Y-%m-%d" (bDateOnly) or
// "%Y-%m-%d %H:%M:%S"; empty if formatting fails. Throws CInvalidArgException when the local time cannot be
// determined.
QUARRIX_API CString GetTimeStampAsText(bool bDateOnly, CTime* pTime);

namespace TimeTools {
// Midnight (00:00:00 local time, daylight saving as the system decides) of the local date of t; a time of 0
// or less gives the time 0. Throws CInvalidArgException when the local time cannot be determined or the year
// lies before 1900.
QUARRIX_API CTime GetDateFromTime(CTime t);
}  // namespace TimeTools

}  // namespace quarrix
