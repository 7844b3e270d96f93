#pragma once

#include <QLabel>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace velmorindal {

/// What a text is on its page; the font follows from it.
enum class TextRole {
    Title,
    DialogTitle,  ///< drawn as a title; a screen reader takes it from the dialog's window instead
    Body,
    Plain,    ///< body text on one line
    Callout,  ///< heads a section of a page
    Label,    ///< names the text beside it, on one line
};

/// A text of a page: plain, wrapped, in a font that follows the application's.
class TextLabel final : public QLabel {
    Q_OBJECT

  public:
    explicit TextLabel(TextRole role, QWidget* parent = nullptr);
    TextLabel(TextRole role, std::string_view utf8, QWidget* parent = nullptr);

    /// Shows `utf8`; a text that already stands there is left alone, so that a screen reader hears it once.
    void showText(std::string_view utf8);

    TextRole role() const { return role_; }

    /// Makes it the place for the focus of a page that is read and not used.
    void makeHeading() { isHeading_ = true; }
    bool isHeading() const { return isHeading_; }

    /// Keeps this wide at least, so that a number that comes and goes moves nothing.
    void keepRoomFor(const QString& text);
    /// Sets the texts that may stand here at other times. They count in the sizes while `count` is set.
    void mayShow(std::vector<QString> texts);
    void countEveryText(bool count);

    /// Of a wrapped text these are its usual and its least width; its height follows from heightForWidth()
    /// alone. The toolkit's own answers would break the text into lines several times over for every
    /// question.
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;
    /// Breaks the text into lines once for each width.
    int heightForWidth(int width) const override;

  protected:
    bool event(QEvent* event) override;

  private:
    void followApplicationFont();
    QSize wrappedHint(int width) const;

    QSize whole(const QSize& size) const;

    const TextRole role_;
    bool isHeading_ = false;
    bool countsEveryText_ = false;
    QString roomFor_;
    std::vector<QString> otherTexts_;
    /// By width, until the text or the way it is drawn changes.
    mutable std::map<int, int> heights_;
};

}  // namespace velmorindal
