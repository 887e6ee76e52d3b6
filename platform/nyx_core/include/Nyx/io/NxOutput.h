// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/base/NbName.h>
#include <Nyx/misc/NyxCoreExport.h>

#include <cstdio>
#include <map>
#include <set>
#include <string>
#include <vector>

class NxBase;

/// Where scene files are written to: the standard output stream, a file or a buffer.
class NYX_CORE_API NxOutput {
public:
  enum Stage {
    COUNT_REFS = 0, ///< Nothing is written; uses of objects are counted.
    WRITE = 1,
  };

  NxOutput();
  ~NxOutput();
  NxOutput(const NxOutput&) = delete;
  NxOutput& operator=(const NxOutput&) = delete;

  /// Writes to a file from now on; false, with a posted error, when it cannot be opened.
  bool openFile(const char* fileName);
  /// Goes back to the standard output stream; false, with a posted error, when what was written did not reach the file.
  bool closeFile();
  /// Writes to a buffer of the output's own from now on.
  void setBuffer();
  /// What has been written to the buffer.
  const std::string& getBuffer() const { return m_buffer; }
  void resetBuffer() { m_buffer.clear(); }

  /// The first line of each scene file.
  static const char* getHeader() { return "#Nyx V1.0 ascii"; }

  Stage getStage() const { return m_stage; }
  /// A change to the counting stage forgets all references counted before.
  void setStage(Stage stage);

  /// Writes the first line of a scene file.
  void writeFileHeader();
  /// Writes text, after the present indentation at the start of a line.
  void write(const std::string& text);
  /// Ends the line, unless nothing has been written to it.
  void endLine();

  /// Notes that an object's uses are being counted, so that its counter can be put back to 0. For NxBase.
  void addReference(NxBase* base);
  /// Writes "USE name" for an object that has been written before, and returns true. Otherwise it writes "DEF name"
  /// where the object has a name or several uses, its class and an opening brace, and returns false; writeFooter
  /// then closes it.
  bool writeHeader(const NxBase* base);
  void writeFooter();

private:
  void forgetReferences();
  void put(const std::string& text);

  FILE* m_file = nullptr;
  bool m_toBuffer = false;
  std::string m_buffer;
  Stage m_stage = COUNT_REFS;
  int m_level = 0;
  bool m_isAtLineStart = true;
  int m_nameCounter = 0;
  std::vector<NxBase*> m_counted;
  std::map<const NxBase*, std::string> m_written;
  std::set<std::string> m_names;
};
