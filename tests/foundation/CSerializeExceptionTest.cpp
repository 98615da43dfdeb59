#include <quarrix/foundation/CBaseException.h>
#include <quarrix/foundation/CSerializeException.h>
#include <quarrix/framework/MessageBox.h>

#include <gtest/gtest.h>

#include "TestSupport.h"

#include <cstring>

namespace quarrix {
namespace {

CSerializeException Make(int code) { return CSerializeException(static_cast<ESerializeException>(code)); }

TEST(CSerializeExceptionTest, MessageTextPrefixes) {
  using E = CBaseException;
  const struct {
    int code;
    int prefix;
    const char16_t* text;
  } rows[] = {
      {4, E::ePrefixNone, u"Unrecognized file format."},
      {4, E::ePrefixID, u"004 - Unrecognized file format."},
      {2, E::ePrefixClass, u"SerializeException - The file you open requires a newer program version."},
      {2, E::ePrefixClassAndID, u"SerializeException  002 - The file you open requires a newer program version."},
      {4, 7, u"Unrecognized file format."},  // an unknown prefix gives the bare message
      {1, E::ePrefixNone, u"The file you open requires a older program version."},  // "a older" is kept
      {15, E::ePrefixID, u"015 - Web Zelt file import failed."},
      {123, E::ePrefixID, u"123 - Undefined serialization error."},  // outside the table: row 0's text
      {1234, E::ePrefixClassAndID, u"SerializeException  1234 - Undefined serialization error."},
      {-5, E::ePrefixID, u"-05 - Undefined serialization error."},
  };
  for (const auto& row : rows) {
    const CSerializeException e = Make(row.code);
    EXPECT_EQ(e.GetExceptionID(), row.code);
    EXPECT_EQ(e.GetMessageText(static_cast<E::EMessagePrefix>(row.prefix)), row.text) << row.code << "/" << row.prefix;
  }
}

TEST(CSerializeExceptionTest, TheTableHasSixteenWritableRowsIndexedByCode) {
  auto& table = CSerializeException::m_ExceptionDefinitionTable;
  static_assert(sizeof table == 16 * (4 + 252));
  for (int i = 0; i < 16; ++i) EXPECT_TRUE(table[i].m_nCode == i && std::strlen(table[i].m_szText) > 0) << i;
  EXPECT_STREQ(table[eSerXmlExport].m_szText, "XML export failed.");
  const CBaseException::SExceptionDefinition saved = table[5];
  std::strcpy(table[5].m_szText, "Stra\xDF" "e fehlt.");  // bytes become characters one for one
  const CSerializeException rewritten = Make(5);
  std::memset(table[5].m_szText, 'x', sizeof table[5].m_szText);  // no terminator at all: stops at 252
  const CSerializeException full = Make(5);
  table[5] = saved;
  EXPECT_EQ(rewritten.GetMessageText(CBaseException::ePrefixNone), u"Straße fehlt.");
  EXPECT_EQ(full.GetMessageText(CBaseException::ePrefixNone), CString(u'x', 252));
}

TEST(CSerializeExceptionTest, CopiesCatchingAndReporting) {
  CSerializeException a(eSerPdfExport);
  const CSerializeException b(a);
  a = CSerializeException(eSerXmlImport);
  EXPECT_EQ(b.GetMessageText(CBaseException::ePrefixID), u"013 - PDF export failed.");
  EXPECT_EQ(a.GetExceptionID(), 12);
  CString shown;
  UINT shownType = 99;
  {
    test::ScopedMessageBoxHandler recorder([&](const CString& text, const CString&, UINT type) {
      shown = text;
      shownType = type;
      return IDOK;
    });
    try {
      throw CSerializeException(eSerNewerVersionRequired);
    } catch (const CBaseException& e) {  // through the base, the class name still comes from the concrete class
      EXPECT_EQ(e.GetExceptionClass(), u"SerializeException");
      e.ReportException();
    }
  }
  EXPECT_EQ(shown, u"SerializeException  002 - The file you open requires a newer program version.");
  EXPECT_EQ(shownType, MB_OK);
}

TEST(PlaceStampTest, LabelsLineAndWidening) {
  EXPECT_EQ(_PlaceStamp("a", "f", -5), u"File:   a\nLine:   -5\nFunction:   f");
  EXPECT_EQ(_PlaceStamp("src\\model.cpp", "CModel::Load", 1234),
            u"File:   src\\model.cpp\nLine:   1234\nFunction:   CModel::Load");
  EXPECT_EQ(_PlaceStamp("\xE4.cpp", nullptr, 0), u"File:   ä.cpp\nLine:   0\nFunction:   ");
}

}  // namespace
}  // namespace quarrix
