"""Settings of the panels on virtual desktops: one panel at the top edge with nothing but status items."""

PANEL_HEIGHT = 32

PANEL_SETTINGS = f"""<?xml version="1.0" encoding="UTF-8"?>
<channel name="xfce4-panel" version="1.0">
  <property name="configver" type="int" value="2"/>
  <property name="panels" type="array">
    <value type="int" value="1"/>
    <property name="panel-1" type="empty">
      <property name="position" type="string" value="p=6;x=0;y=0"/>
      <property name="position-locked" type="bool" value="true"/>
      <property name="length" type="uint" value="100"/>
      <property name="size" type="uint" value="{PANEL_HEIGHT}"/>
      <property name="icon-size" type="uint" value="16"/>
      <property name="plugin-ids" type="array">
        <value type="int" value="1"/>
      </property>
    </property>
  </property>
  <property name="plugins" type="empty">
    <property name="plugin-1" type="string" value="systray">
      <property name="square-icons" type="bool" value="true"/>
    </property>
  </property>
</channel>
"""


LXQT_PANEL_SETTINGS = f"""[General]
__userfile__=true
panels=panel1

[panel1]
plugins=statusnotifier
position=Top
panelSize={PANEL_HEIGHT}
iconSize=22
alignment=-1
width=100
width-percent=true

[statusnotifier]
type=statusnotifier
"""
