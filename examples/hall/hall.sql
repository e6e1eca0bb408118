-- The catalogue of the hall: what its devices are called, what they are told and what they answer.
-- `kel demo` makes hall.sqlite of it. One statement ends with a semicolon at the end of a line.

-- Makes of devices.
CREATE TABLE vendors (id INTEGER PRIMARY KEY, name TEXT);
CREATE TABLE devices (id INTEGER PRIMARY KEY, name TEXT, vname TEXT, gname TEXT, desc TEXT, vendor INTEGER);

-- What a make is told, and what it answers.
CREATE TABLE commands (id INTEGER PRIMARY KEY, command TEXT, description TEXT, device INTEGER);
CREATE TABLE answers (id INTEGER PRIMARY KEY, command TEXT, description TEXT, device INTEGER);

-- The devices that hang in this hall: a make, a name and a number on the bus.
CREATE TABLE current (id INTEGER PRIMARY KEY, device INTEGER, name TEXT, device_id INTEGER);

-- The objects that buttons name ("ceiling.toggle"), and their packets.
CREATE TABLE properties (object_id INTEGER, device_id INTEGER, name TEXT, value TEXT);
CREATE TABLE packets (id INTEGER PRIMARY KEY, name TEXT, args_count INTEGER, flags INTEGER, command TEXT, desc TEXT, object_id INTEGER);

INSERT INTO vendors VALUES (1, 'Acme');

INSERT INTO devices VALUES (1, 'Relay', 'Acme', 'Light', 'One switched circuit, 10 A', 1);
INSERT INTO devices VALUES (2, 'Dimmer', 'Acme', 'Light', 'One dimmed circuit, levels 0 to 254', 1);
INSERT INTO devices VALUES (3, 'Climate', 'Acme', 'Sensor', 'Temperature and humidity', 1);
INSERT INTO devices VALUES (4, 'Lamp relay', 'Acme', 'Light', 'One lamp, answers with its state', 1);

INSERT INTO commands VALUES (11, 'A1 %id 01', 'toggle', 1);
INSERT INTO commands VALUES (12, 'A1 %id 02 %0', 'switch off (0) or on (1)', 1);
INSERT INTO answers VALUES (11, 'A2 %id 01 01', 'is on', 1);
INSERT INTO answers VALUES (12, 'A2 %id 01 00', 'is off', 1);

-- The dimmer takes its level as a byte, 0 to 254 (FE); people and sliders count in percent.
INSERT INTO commands VALUES (21, 'A1 %id 10 00 01', 'scene: off', 2);
INSERT INTO commands VALUES (22, 'A1 %id 10 %(254/10) 02', 'scene: night', 2);
INSERT INTO commands VALUES (23, 'A1 %id 10 %(254*2/5) 03', 'scene: dinner', 2);
INSERT INTO commands VALUES (24, 'A1 %id 10 %(254*7/10) 04', 'scene: reading', 2);
INSERT INTO commands VALUES (25, 'A1 %id 10 FE 05', 'scene: full', 2);
INSERT INTO commands VALUES (26, 'A1 %id 11 %(a0*254/100)', 'level in percent', 2);
INSERT INTO answers VALUES (21, 'A2 %id 10 %0 %1 01', 'off: level 0 to 254, percent', 2);
INSERT INTO answers VALUES (22, 'A2 %id 10 %0 %1 02', 'night: level 0 to 254, percent', 2);
INSERT INTO answers VALUES (23, 'A2 %id 10 %0 %1 03', 'dinner: level 0 to 254, percent', 2);
INSERT INTO answers VALUES (24, 'A2 %id 10 %0 %1 04', 'reading: level 0 to 254, percent', 2);
INSERT INTO answers VALUES (25, 'A2 %id 10 %0 %1 05', 'full: level 0 to 254, percent', 2);
INSERT INTO answers VALUES (26, 'A2 %id 11 %0', 'level 0 to 254', 2);

INSERT INTO commands VALUES (31, 'A1 %id 20', 'measure now', 3);
INSERT INTO answers VALUES (31, 'A2 %id 20 %0 %1', 'measured: degrees Celsius, percent', 3);
INSERT INTO answers VALUES (32, 'A3 %id', 'is there', 3);
INSERT INTO commands VALUES (33, 'A1 %id 21', 'poll', 3);
INSERT INTO answers VALUES (33, 'A2 %id 21 %0 %1', 'polled: degrees Celsius, percent', 3);

INSERT INTO commands VALUES (41, 'A1 %id 30', 'toggle', 4);
INSERT INTO answers VALUES (41, 'A2 %id 30 %0', 'off (0) or on (1)', 4);

INSERT INTO current VALUES (1, 1, 'Ceiling', 1);
INSERT INTO current VALUES (2, 1, 'Wall lamps', 2);
INSERT INTO current VALUES (3, 1, 'Garden', 3);
INSERT INTO current VALUES (4, 2, 'Table', 4);
INSERT INTO current VALUES (5, 3, 'Hall', 5);
INSERT INTO current VALUES (6, 4, 'Porch', 6);

INSERT INTO properties VALUES (1, 1, 'name', 'ceiling');
INSERT INTO properties VALUES (2, 1, 'name', 'wall');
INSERT INTO properties VALUES (3, 1, 'name', 'garden');
INSERT INTO properties VALUES (4, 2, 'name', 'table');
INSERT INTO properties VALUES (5, 3, 'name', 'climate');
INSERT INTO properties VALUES (6, 4, 'name', 'porch');

INSERT INTO packets VALUES (1, 'toggle', 0, 0, 'A1 %id 01', 'toggle', 1);
INSERT INTO packets VALUES (2, 'toggle', 0, 0, 'A1 %id 01', 'toggle', 2);
INSERT INTO packets VALUES (3, 'toggle', 0, 0, 'A1 %id 01', 'toggle', 3);
INSERT INTO packets VALUES (4, 'scene', 2, 0, 'A1 %id 10 %0 %1', 'level and scene', 4);
INSERT INTO packets VALUES (5, 'measure', 0, 0, 'A1 %id 20', 'measure now', 5);
INSERT INTO packets VALUES (6, 'toggle', 0, 0, 'A1 %id 30', 'toggle', 6);
