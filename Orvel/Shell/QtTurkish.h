#pragma once

class QCoreApplication;

namespace orvel {

// Qt's own words (file, print and PDF dialogs, a text field's menu) in Turkish, as Orvel speaks
// Turkish whatever the desktop's language.
namespace QtTurkish {

// Installs Qt's Turkish translations on the application and makes Turkish the default locale;
// false when the translations are not installed (the dialogs then stay in English).
bool install(QCoreApplication &application);

} // namespace QtTurkish

} // namespace orvel
