#pragma once
// How a message names a file: its name and the folder it is in, so that the operator can
// find it ("Kestrel.txt in /home/op/station").
#include <QString>

QString FilePlace(const QString& path);
