#pragma once
// Makes a line edit upper case while the operator types.
#include <QValidator>

class UpperCaseValidator : public QValidator {
    Q_OBJECT
public:
    using QValidator::QValidator;
    State validate(QString& input, int& pos) const override;
};
