// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KiExport.h>
#include <KerrinExtractor/KiExtractorCallback.h>

/// Base of every extractor.
///
/// An extractor is bound to one mesh and keeps what it yields until its next call. It compares the time stamps of mesh,
/// sets, filter and parameters with those of its last call and does nothing when nothing has changed. One thread at a
/// time may use it; made with `parallel` true it divides its own work, with the same result bit for bit.
class KERRIN_EXTRACTOR_API KiBaseExtractor {
public:
  virtual ~KiBaseExtractor();
  /// The callback of all following extractions; not owned, must live as long as it is set.
  virtual void setExtractorCallback(KiExtractorCallback& callback);
  /// Null takes the callback away.
  virtual void setExtractorCallback(KiExtractorCallback* callback);

protected:
  KiBaseExtractor() = default;
  KiBaseExtractor(const KiBaseExtractor&) = delete;
  KiBaseExtractor& operator=(const KiBaseExtractor&) = delete;
  KiExtractorCallback* getExtractorCallback() const { return m_callback; }

private:
  KiExtractorCallback* m_callback = nullptr;
};
