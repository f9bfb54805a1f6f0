#include "kvKalivoDesignerPlugin.h"

#include "kvKalivo.h"

kvKalivoDesignerPlugin::kvKalivoDesignerPlugin(QObject *parent)
    : QObject(parent)
{
}

QString kvKalivoDesignerPlugin::name() const
{
    return QStringLiteral("kvKalivo");
}

QString kvKalivoDesignerPlugin::group() const
{
    return QStringLiteral("kvKalivo");
}

QString kvKalivoDesignerPlugin::toolTip() const
{
    return QStringLiteral("Terminkalender mit Wochen- und Monatsansicht");
}

QString kvKalivoDesignerPlugin::whatsThis() const
{
    return QStringLiteral(
        "kvKalivo, das Terminkalender-Steuerelement: zeigt die Termine einer Datenbanktabelle "
        "(RecordSource) in einer Wochen- oder Monatsansicht mit Kalenderwochen und Feiertagen. "
        "Im Designer bleibt das Raster leer (Entwurfsmodus); die Datenbankverbindung "
        "(Connection) übergibt die Anwendung zur Laufzeit.");
}

QString kvKalivoDesignerPlugin::includeFile() const
{
    return QStringLiteral("kvKalivo.h");
}

QIcon kvKalivoDesignerPlugin::icon() const
{
    // The library's own toolbar picture for "Month" (Breeze, licence in its resources folder).
    QIcon icon;
    icon.addFile(QStringLiteral(":/kvkalivo/toolbar/16/month.svg"), QSize(16, 16));
    icon.addFile(QStringLiteral(":/kvkalivo/toolbar/22/month.svg"), QSize(22, 22));
    return icon;
}

bool kvKalivoDesignerPlugin::isContainer() const
{
    return false;
}

QWidget *kvKalivoDesignerPlugin::createWidget(QWidget *parent)
{
    auto *calendar = new kvKalivo(parent);
    calendar->setUserMode(!m_initialized);
    return calendar;
}

bool kvKalivoDesignerPlugin::isInitialized() const
{
    return m_initialized;
}

void kvKalivoDesignerPlugin::initialize(QDesignerFormEditorInterface *)
{
    // Only Designer calls this; QUiLoader uses the plugin without it.
    m_initialized = true;
}

QString kvKalivoDesignerPlugin::domXml() const
{
    // Not named "kvKalivo": uic would declare a member that hides the class in "new kvKalivo".
    // A table name is no text to translate; the footnote is.
    return QStringLiteral(R"(<ui language="c++" displayname="kvKalivo">
 <widget class="kvKalivo" name="kvkalivo">
  <property name="geometry">
   <rect>
    <x>0</x>
    <y>0</y>
    <width>800</width>
    <height>600</height>
   </rect>
  </property>
 </widget>
 <customwidgets>
  <customwidget>
   <class>kvKalivo</class>
   <extends>QWidget</extends>
   <propertyspecifications>
    <stringpropertyspecification name="RecordSource" notr="true" type="singleline"/>
    <stringpropertyspecification name="Footnote" type="singleline"/>
   </propertyspecifications>
  </customwidget>
 </customwidgets>
</ui>
)");
}
