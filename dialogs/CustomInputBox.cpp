#include "dialogs/CustomInputBox.h"

#include "base/SecretText.h"
#include "dialogs/frmCustomInputBox.h"

#include <algorithm>
#include <limits>

namespace qir {

DatiInputBox &datiInputBox() {
    static DatiInputBox record;
    return record;
}

QString CustomInputBox(QWidget *parent, const QString &prompt, const QString &title, const QString &defaultText,
                       bool &cancelled, bool multiline, bool password) {
    constexpr qsizetype longest = std::numeric_limits<std::int16_t>::max();
    DatiInputBox &record = datiInputBox();
    record.prompt.store(prompt);
    record.title.store(title);
    record.defaultText.store(defaultText);
    record.defaultLength = static_cast<std::int16_t>(std::min(defaultText.size(), longest));
    record.cancelled = false;
    record.multiline = multiline;
    record.password = password;

    frmCustomInputBox(parent).exec();

    const SecretText whole(record.result.text());
    cancelled = record.cancelled;
    return withoutTrailingBlanks(whole.text());
}

} // namespace qir
