#pragma once
// The key table of the logbook's entry line: where Enter and the arrow keys move the focus.
// Built for keyboard use, Enter walks Ca, Gr, Rss, Rr, Ba, mo, Na, Co, Qs, Pr and ends on Save.

enum class EntryField { DA, GM, Ca, Gr, Rss, Rr, Ba, mo, Na, Co, Qs, Pr, Save };
enum class EntryKey { Enter, Left, Right, Other };

namespace EntryKeys {
// The field that gets the focus after `key` in `field`; the same field when the focus stays.
EntryField next(EntryField field, EntryKey key);
// True when `key` in `field` moves the focus (the key is then used up).
bool moves(EntryField field, EntryKey key);
} // namespace EntryKeys
