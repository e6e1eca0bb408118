-- The rows that the panels in this folder are checked against: one good make, and one for each slip.

INSERT INTO vendors VALUES (1, 'Acme');
INSERT INTO properties (object_id, device_id, name, value) VALUES (1, 1, 'name', 'lamp');
INSERT INTO packets (id, name, command, object_id) VALUES (1, 'toggle', 'A1 %id 01', 1);

-- The good make, twice.
INSERT INTO devices (id, name, vname, vendor) VALUES (1, 'Relay', 'Acme', 1);
INSERT INTO commands (id, command, description, device) VALUES (1, 'A1 %id 01', 'toggle', 1);
INSERT INTO commands (id, command, description, device) VALUES (2, 'A1 %id 02 %0', 'switch', 1);
INSERT INTO commands (id, command, description, device) VALUES (3, 'A1 %id 03 %(a1*2)', 'level', 1);
INSERT INTO answers (id, command, description, device) VALUES (1, 'A2 %id 01', 'done', 1);
INSERT INTO answers (id, command, description, device) VALUES (2, 'A2 %id 02 %0 %1', 'state', 1);
INSERT INTO current (id, device, name, device_id) VALUES (1, 1, 'Ceiling', 5);
INSERT INTO current (id, device, name, device_id) VALUES (2, 1, 'Wall', 6);

-- An own id that no byte has.
INSERT INTO current (id, device, name, device_id) VALUES (3, 1, 'Far', 300);

-- Makes that are not there, or have no vendor.
INSERT INTO current (id, device, name, device_id) VALUES (4, 99, 'Lost', 7);
INSERT INTO devices (id, name, vname, vendor) VALUES (5, 'Orphan', '', 99);
INSERT INTO current (id, device, name, device_id) VALUES (5, 5, 'Orphan', 8);

INSERT INTO devices (id, name, vname, vendor) VALUES (6, 'Shadow', 'Acme', 1);
INSERT INTO answers (id, command, description, device) VALUES (61, 'A2 %id %0', 'any state', 6);
INSERT INTO answers (id, command, description, device) VALUES (62, 'A2 %id 05', 'never', 6);
INSERT INTO answers (id, command, description, device) VALUES (63, 'A3 %id 05', 'not hidden', 6);
INSERT INTO current (id, device, name, device_id) VALUES (6, 6, 'Shadow', 9);

INSERT INTO devices (id, name, vname, vendor) VALUES (7, 'Wide', 'Acme', 1);
INSERT INTO answers (id, command, description, device) VALUES (71, 'A2 1FF', 'above a byte', 7);
INSERT INTO current (id, device, name, device_id) VALUES (7, 7, 'Wide', 10);

INSERT INTO devices (id, name, vname, vendor) VALUES (8, 'Sum', 'Acme', 1);
INSERT INTO commands (id, command, description, device) VALUES (81, 'A1 %(2*)', 'unfinished', 8);
INSERT INTO current (id, device, name, device_id) VALUES (8, 8, 'Sum', 11);

INSERT INTO devices (id, name, vname, vendor) VALUES (9, 'Blank', 'Acme', 1);
INSERT INTO commands (id, command, description, device) VALUES (91, 'A1 %(a0 * 2) 0D', 'cut up', 9);
INSERT INTO current (id, device, name, device_id) VALUES (9, 9, 'Blank', 12);

INSERT INTO devices (id, name, vname, vendor) VALUES (10, 'Word', 'Acme', 1);
INSERT INTO commands (id, command, description, device) VALUES (101, 'A1 on', 'a word', 10);
INSERT INTO current (id, device, name, device_id) VALUES (10, 10, 'Word', 13);

INSERT INTO devices (id, name, vname, vendor) VALUES (11, 'Formula', 'Acme', 1);
INSERT INTO answers (id, command, description, device) VALUES (111, 'A2 %(a0)', 'an expression', 11);
INSERT INTO current (id, device, name, device_id) VALUES (11, 11, 'Formula', 14);

-- The wide make once more, with another own id.
INSERT INTO current (id, device, name, device_id) VALUES (12, 7, 'Wider', 15);
