#include "display/RatingStars.h"

#include "base/FileNames.h"
#include "base/TextRules.h"
#include "base/VbError.h"
#include "display/DisplayHost.h"
#include "display/TrackValues.h"
#include "platform/MessageBox.h"
#include "platform/PictureLoader.h"
#include "player/link/PlayerAccess.h"
#include "skin/SkinModel.h"

#include <QHash>
#include <optional>

namespace Pelorin {

namespace {

double NumberOf(const QStringList& fields, qsizetype index) {
    return Rules::LeadingNumber(Rules::Field(fields, index));
}

} // namespace

RatingStars::RatingStars(DisplayHost& host, WindowPlayer& player)
    : m_host(host), m_player(player) {}

void RatingStars::ShowRatings(TrackValues& values) {
    const SkinModel& model = m_host.Model();
    if (model.RatingsSpec.isEmpty())
        return;
    const QStringList fields = Rules::SplitFields(model.RatingsSpec);
    // Read once for the five stars, when the first lit-or-unlit star needs it.
    std::optional<int> rating;
    // Each of the two pictures is decoded once per refresh, not once per star.
    QHash<QString, QImage> pictures;
    for (int k = 0; k < StarCount; ++k) {
        const double left = NumberOf(fields, 0) + k * NumberOf(fields, 2) + k * NumberOf(fields, 4);
        const QRect geometry(Rules::ToInt32(left), Rules::ToInt32(NumberOf(fields, 1)),
                             Rules::ToInt32(NumberOf(fields, 2)),
                             Rules::ToInt32(NumberOf(fields, 3)));
        QImage picture;
        const QString& unlit = Rules::Field(fields, 5);
        if (unlit != u"NONE") {
            if (!rating)
                rating = values.Rating();
            const bool lit = k < *rating / 20.0;
            const QString& name = lit ? Rules::Field(fields, 6) : unlit;
            const QString file = FileNames::InFolder(model.SkinFolder, name);
            auto known = pictures.constFind(file);
            if (known == pictures.constEnd()) {
                if (!FileNames::Confined(model.SkinFolder, name, file))
                    throw VbError::CannotLoadFile();
                known = pictures.insert(file, LoadPicture(file));
            }
            picture = *known;
        }
        m_host.SetRatingStar(k, geometry, picture);
    }
}

void RatingStars::Rate(int index) {
    if (index < 0 || index >= StarCount)
        return;
    if (m_player.iTunesIsNothing(true))
        return;
    PlayerAccess::CurrentTrack(PlayerAccess::App(m_player))->SetRating((index + 1) * 20);
}

void RatingStars::imgRatings_Click(int index) {
    try {
        Rate(index);
    } catch (const VbError& error) {
        MessageBox::Show(error.description(), QStringLiteral("Error!"), MessageBox::Icon::Critical);
    }
}

void RatingStars::imgRatings_MouseDown(int /*index*/) {
    m_host.RunInterActionCode();
}

} // namespace Pelorin
