#include "studiopage.h"

#include <functional>
#include <memory>

#include <QCheckBox>
#include <QComboBox>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QSignalBlocker>
#include <QSpinBox>
#include <QVBoxLayout>

#include "core/description.h"
#include "core/hoststate.h"
#include "core/services.h"
#include "core/values.h"
#include "gui/containervalue.h"
#include "qtcodes.h"

namespace vx3::desktop {

namespace {

using core::DescribedElement;
using core::ElementKind;

const VX3ContainerServices& Containers()
{
    return *core::ContainerServices();
}

// The module's own texts.
class PageTexts
{
public:
    explicit PageTexts(const std::string& binary)
        : resources(core::ResourceServices()->load(core::Path(std::string_view(binary)).Get()))
    {
    }
    ~PageTexts() { core::ResourceServices()->free(resources); }
    PageTexts(const PageTexts&) = delete;
    PageTexts& operator=(const PageTexts&) = delete;

    QString Of(int32_t number) const
    {
        core::Text text;
        core::ResourceServices()->text(resources, number, text.Get());
        return ToQt(text.Units());
    }

private:
    VX3Resources* resources;
};

// What a page has of one element, and the way back.
struct Binding {
    core::RegisteredPage page;
    int32_t element;

    bool Read(gui::ContainerValue& values) const
    {
        return page.table->getValue && page.table->getValue(page.object, element, values.Get());
    }
    int ReadNumber(int fallback) const
    {
        gui::ContainerValue values;
        return Read(values) ? Containers().getInt32(values.Get(), element, fallback) : fallback;
    }
    QString ReadText() const
    {
        gui::ContainerValue values;
        core::Text text;
        if (Read(values))
            Containers().getText(values.Get(), element, text.Get());
        return ToQt(text.Units());
    }
    bool Write(const std::function<void(VX3Container&)>& fill) const
    {
        gui::ContainerValue values;
        fill(*values.Get());
        return page.table->setValue && page.table->setValue(page.object, element, values.Get());
    }
    bool WriteNumber(int number) const
    {
        return Write([&](VX3Container& values) { Containers().setInt32(&values, element, number); });
    }
    bool WriteText(const QString& text) const
    {
        const core::Text units{ std::u16string_view(ToUnits(text)) };
        return Write([&](VX3Container& values) { Containers().setText(&values, element, units.Get()); });
    }
};

QWidget* MakeSwitch(const Binding& binding, const QString& text)
{
    auto* box = new QCheckBox(text);
    box->setChecked(binding.ReadNumber(0) != 0);
    QObject::connect(box, &QCheckBox::clicked, box, [box, binding](bool isOn) {
        if (!binding.WriteNumber(isOn ? 1 : 0))
            box->setChecked(binding.ReadNumber(0) != 0);
    });
    return box;
}

QWidget* MakeNumber(const Binding& binding, const DescribedElement& element)
{
    auto* spin = new QSpinBox;
    spin->setRange(element.minimum, element.maximum);
    spin->setSingleStep(element.step);
    spin->setValue(binding.ReadNumber(element.minimum));
    spin->setKeyboardTracking(false); // half a number is none
    QObject::connect(spin, &QSpinBox::valueChanged, spin, [spin, binding](int value) {
        if (binding.WriteNumber(value))
            return;
        const QSignalBlocker blocker(spin);
        spin->setValue(binding.ReadNumber(value));
    });
    return spin;
}

QWidget* MakeChoice(const Binding& binding, const DescribedElement& element, const PageTexts& texts)
{
    auto* combo = new QComboBox;
    for (int32_t choice : element.choices)
        combo->addItem(texts.Of(choice));
    combo->setCurrentIndex(binding.ReadNumber(0));
    QObject::connect(combo, &QComboBox::activated, combo, [combo, binding](int row) {
        if (!binding.WriteNumber(row))
            combo->setCurrentIndex(binding.ReadNumber(0));
    });
    return combo;
}

QWidget* MakeUrl(const Binding& binding)
{
    constexpr int letters = 40;
    auto* edit = new QLineEdit(binding.ReadText());
    edit->setMinimumWidth(edit->fontMetrics().averageCharWidth() * letters);
    QObject::connect(edit, &QLineEdit::editingFinished, edit, [edit, binding] {
        if (!binding.WriteText(edit->text()))
            edit->setText(binding.ReadText());
    });
    return edit;
}

void AddElement(QFormLayout& form, const Binding& binding, const DescribedElement& element, const PageTexts& texts)
{
    const QString text = texts.Of(element.text);
    switch (element.kind) {
    case ElementKind::Switch: form.addRow(MakeSwitch(binding, text)); break;
    case ElementKind::Number: form.addRow(text, MakeNumber(binding, element)); break;
    case ElementKind::Choice: form.addRow(text, MakeChoice(binding, element, texts)); break;
    case ElementKind::Url: form.addRow(text, MakeUrl(binding)); break;
    }
}

} // namespace

QWidget* MakePage(const core::RegisteredPage& page, const std::string& binary)
{
    const PageTexts texts(binary);
    const core::Description description = core::LoadDescription(binary, page.description);
    for (const std::string& problem : description.problems)
        core::WriteConsoleLine(page.description + ": " + problem);
    auto* widget = new QWidget;
    auto* title = new QLabel(QString::fromStdString(page.name));
    QFont bold = title->font();
    bold.setBold(true);
    title->setFont(bold);
    auto* form = new QFormLayout;
    form->setFieldGrowthPolicy(QFormLayout::FieldsStayAtSizeHint);
    auto* down = new QVBoxLayout(widget);
    down->addWidget(title);
    down->addLayout(form);
    down->addStretch(1);
    for (const DescribedElement& element : description.elements)
        AddElement(*form, { page, element.id }, element, texts);
    return widget;
}

} // namespace vx3::desktop
