#pragma once

#include <QFrame>

namespace Report {

/// A sheet with an outline, white in every theme, that the plots lie on.
class Sheet : public QFrame {
    Q_OBJECT

public:
    explicit Sheet(QWidget* parent = nullptr);

protected:
    void changeEvent(QEvent* event) override;

private:
    void Colour();
};

}  // namespace Report
