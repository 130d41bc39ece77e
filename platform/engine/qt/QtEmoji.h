#pragma once

#include <QFont>
#include <QList>
#include <QTextLayout>

namespace platform {

/// The parts of a text that are emoji, each to be set in the colour font: single ones, and what joiners, skin tones,
/// flags, keycaps and variation selectors make of several letters. Nothing when the machine has no colour font. What a
/// text asks to be shown as a letter (U+FE0E) is none, nor are arrows, digits and signs that the text's own font has,
/// unless the text asks for their picture (U+FE0F). Main thread.
QList<QTextLayout::FormatRange> emojiRanges(const QString& text, const QFont& font);

}  // namespace platform
