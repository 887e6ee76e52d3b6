// SPDX-License-Identifier: BSD-3-Clause
#include <Nyx/io/NxOutput.h>

#include <Nyx/base/NxError.h>
#include <Nyx/misc/NxBase.h>

#include <cerrno>
#include <cstring>

NxOutput::NxOutput() = default;

NxOutput::~NxOutput() {
  forgetReferences();
  closeFile();
}

bool NxOutput::openFile(const char* fileName) {
  closeFile();
  m_file = std::fopen(fileName, "w");
  m_toBuffer = false;
  if (!m_file) NxError::post("NxOutput::openFile: %s cannot be written: %s", fileName, std::strerror(errno));
  return m_file != nullptr;
}

bool NxOutput::closeFile() {
  if (!m_file) return true;
  const bool isWritten = std::ferror(m_file) == 0;
  const bool isClosed = std::fclose(m_file) == 0;
  m_file = nullptr;
  if (!isWritten || !isClosed) NxError::post("NxOutput::closeFile: the file could not be written completely.");
  return isWritten && isClosed;
}

void NxOutput::setBuffer() {
  closeFile();
  m_toBuffer = true;
}

void NxOutput::setStage(Stage stage) {
  m_stage = stage;
  if (stage == COUNT_REFS) forgetReferences();
}

void NxOutput::forgetReferences() {
  for (NxBase* base : m_counted) {
    base->m_writeReferences = 0;
    base->unref();
  }
  m_counted.clear();
  m_written.clear();
  m_names.clear();
  m_nameCounter = 0;
}

void NxOutput::addReference(NxBase* base) {
  base->ref();
  m_counted.push_back(base);
}

void NxOutput::put(const std::string& text) {
  if (m_toBuffer)
    m_buffer += text;
  else
    std::fwrite(text.data(), 1, text.size(), m_file ? m_file : stdout);
}

void NxOutput::writeFileHeader() { put(std::string(getHeader()) + "\n\n"); }

void NxOutput::write(const std::string& text) {
  if (text.empty()) return;
  if (m_isAtLineStart) put(std::string(2 * static_cast<size_t>(m_level), ' '));
  put(text);
  m_isAtLineStart = false;
}

void NxOutput::endLine() {
  if (m_isAtLineStart) return;
  put("\n");
  m_isAtLineStart = true;
}

bool NxOutput::writeHeader(const NxBase* base) {
  if (const auto written = m_written.find(base); written != m_written.end()) {
    write("USE " + written->second);
    endLine();
    return true;
  }
  if (!base->getName().isEmpty() || base->hasMultipleWriteRefs()) {
    std::string name = base->getName().getString();
    while (name.empty() || m_names.count(name))
      name = base->getName().getString() + ("+" + std::to_string(m_nameCounter++));
    m_names.insert(name);
    m_written.emplace(base, name);
    write("DEF " + name + " ");
  }
  write(base->getFileFormatName().getString());
  write(" {");
  endLine();
  ++m_level;
  return false;
}

void NxOutput::writeFooter() {
  --m_level;
  write("}");
  endLine();
}
