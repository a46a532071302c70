#pragma once
// Shares the contacts of a print run out onto cards. A card confirms up to four contacts with
// one station: consecutive contacts (callsign order) with the same callsign and QSL manager
// share a card, one line each; a fifth contact, or another station, starts the next card.
#include "qsl/QslRunBuffer.h"

#include <QHash>
#include <QList>
#include <QString>

// The texts one card puts into its text boxes and into Label10, by control name.
using CardTexts = QHash<QString, QString>;

namespace QslCards {
constexpr int ContactsPerCard = 4;

QList<CardTexts> make(const QslRunBuffer& run, int contactsPerCard = ContactsPerCard);
// The same card texts with every text box empty and Label10 cleared (after a print run).
CardTexts cleared();
} // namespace QslCards
