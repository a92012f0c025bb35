#pragma once

#include <QTranslator>

class QLocale;
class QString;

/// The language that the application speaks while this exists.
///
/// The English table comes first, the best one for the user's languages on top of it: what that
/// lacks is said in English, and a key that neither has is its own text. The toolkit's own texts
/// and the direction of the windows follow the panel's table, not the user's wish, so that a window
/// never mixes languages. The option "-reverse" turns the direction round, as it does for every
/// application.
class Language
{
  public:
    /// Looks for the tables in the folder `tables`.
    Language( QLocale const& user, QString const& tables );

  private:
    QTranslator mEnglish;
    QTranslator mUsers;
    QTranslator mToolkits;
};
