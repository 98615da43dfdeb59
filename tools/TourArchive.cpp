#include "Tool.h"

#include <quarrix/collections/CIntArray.h>
#include <quarrix/collections/CIntList.h>
#include <quarrix/collections/CMapIntToInt.h>
#include <quarrix/foundation/CSerializeException.h>
#include <quarrix/framework/CArchive.h>
#include <quarrix/framework/CMemFile.h>

#include <iomanip>
#include <vector>

namespace quarrix::tool {
namespace {

// Offset, then up to 16 bytes in hexadecimal, of bytes [from, to).
void HexDump(std::ostream& out, const std::vector<BYTE>& bytes, std::size_t from, std::size_t to) {
  for (std::size_t line = from; line < to; line += 16) {
    out << "  " << std::hex << std::uppercase << std::setfill('0') << std::setw(4) << line << "  ";
    for (std::size_t i = line; i < std::min(line + 16, to); ++i) out << std::setw(2) << +bytes[i] << ' ';
    out << std::dec << std::setfill(' ') << "\n";
  }
}

template <class T>
void Describe(std::ostream& out, const char* name, const T& items) {
  out << name << " {";
  const char* separator = "";
  for (const auto& item : items) {
    out << separator << item;
    separator = ", ";
  }
  out << "}\n";
}

}  // namespace

void TourArchive(std::ostream& out) {
  Heading(out, "framework + collections: an archive, byte for byte");
  CIntArray numbers;
  numbers.Add(7);
  numbers.Add(-1);
  CIntList ordered;
  for (int v : {5, 1, 9, 5}) ordered.Add(v, 2 | 1);  // ascending, unique
  CMapIntToInt map;
  map[1] = 10;
  map[0] = 20;
  map[17] = 30;  // shares bucket 0 with key 0, and comes first: the newest heads its chain
  const CString text(u"Träger");

  CMemFile file;
  std::vector<ULONGLONG> ends;
  {
    CArchive ar(&file, CArchive::store);
    numbers.Serialize(ar);
    ends.push_back(ar.GetPosition());
    ordered.Serialize(ar);
    ends.push_back(ar.GetPosition());
    map.Serialize(ar);
    ends.push_back(ar.GetPosition());
    ar << text;
    ends.push_back(ar.GetPosition());
    ar.Close();
  }
  const std::vector<BYTE> bytes = file.GetBytes();
  const char* what[] = {"CIntArray {7, -1}: version 1, count 2 (ints), the elements",
                        "CIntList {1, 5, 9}: count 3 (count primitive), the elements head to tail",
                        "CMapIntToInt {0:20, 1:10, 17:30}: count, then pairs in bucket order 17, 0, 1",
                        "CString \"Träger\": FF FE FF (wide text), length 6, UTF-16LE"};
  std::size_t from = 0;
  for (std::size_t i = 0; i < ends.size(); ++i) {
    out << what[i] << "\n";
    HexDump(out, bytes, from, static_cast<std::size_t>(ends[i]));
    from = static_cast<std::size_t>(ends[i]);
  }

  std::vector<BYTE> copy = bytes;
  CMemFile input(copy.data(), static_cast<UINT>(copy.size()));
  CArchive ar(&input, CArchive::load);
  CIntArray numbersBack;
  CIntList orderedBack;
  CMapIntToInt mapBack;
  CString textBack;
  numbersBack.Serialize(ar);
  orderedBack.Serialize(ar);
  mapBack.Serialize(ar);
  ar >> textBack;
  out << "read back       : ";
  Describe(out, "CIntArray", numbersBack);
  out << "                  ";
  Describe(out, "CIntList", orderedBack);
  out << "                  CMapIntToInt {";
  const char* separator = "";
  for (const auto& pair : mapBack) {
    out << separator << pair.key << ":" << pair.value;
    separator = ", ";
  }
  out << "}, CString \"" << textBack << "\"\n";
  out << "                  (0 and 17 trade places: loading inserts 17 first, and 0 then heads the chain)\n";

  // Damaged input fails with the archive's own exception, before anything is allocated or changed.
  std::vector<BYTE> cut(bytes.begin(), bytes.begin() + 10);
  CMemFile shortFile(cut.data(), static_cast<UINT>(cut.size()));
  CArchive shortArchive(&shortFile, CArchive::load);
  try {
    CIntArray damaged;
    damaged.Serialize(shortArchive);
  } catch (const CArchiveException& e) {
    out << "first 10 bytes  : " << e.GetErrorMessage() << "\n";
  }
  std::vector<BYTE> newer = bytes;
  newer[0] = 2;  // a layout version this build does not know
  CMemFile newerFile(newer.data(), static_cast<UINT>(newer.size()));
  CArchive newerArchive(&newerFile, CArchive::load);
  try {
    numbersBack.Serialize(newerArchive);
  } catch (const CSerializeException& e) {
    out << "version 2       : " << e.GetMessageText(CBaseException::ePrefixClassAndID) << "\n";
  }
}

}  // namespace quarrix::tool
