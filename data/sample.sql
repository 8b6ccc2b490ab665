-- VELDA's sample database: a household survey of 6,000 people living in 18
-- towns of France and Belgium, with the towns' place in their regions and
-- countries (for a taxonomy) and facts about each town (variables at the
-- level of the groups). Build it with:  sqlite3 build/sample.db < data/sample.sql
--
-- Every column is declared with a type that VELDA reads: varchar(n) with n at
-- most 255 (character), integer (integer) or real (real). The rows come from a
-- fixed linear congruential generator, so the data are the same every time.

BEGIN;

-- The towns and their hierarchy: town -> region -> country.
CREATE TABLE towns (
  town    varchar(40) NOT NULL PRIMARY KEY,
  region  varchar(40) NOT NULL,
  country varchar(40) NOT NULL
);
INSERT INTO towns VALUES
  ('Paris', 'Île-de-France', 'France'),
  ('Versailles', 'Île-de-France', 'France'),
  ('Créteil', 'Île-de-France', 'France'),
  ('Lyon', 'Auvergne-Rhône-Alpes', 'France'),
  ('Grenoble', 'Auvergne-Rhône-Alpes', 'France'),
  ('Saint-Étienne', 'Auvergne-Rhône-Alpes', 'France'),
  ('Toulouse', 'Occitanie', 'France'),
  ('Montpellier', 'Occitanie', 'France'),
  ('Nîmes', 'Occitanie', 'France'),
  ('Dijon', 'Bourgogne-Franche-Comté', 'France'),
  ('Besançon', 'Bourgogne-Franche-Comté', 'France'),
  ('Liège', 'Wallonia', 'Belgium'),
  ('Namur', 'Wallonia', 'Belgium'),
  ('Charleroi', 'Wallonia', 'Belgium'),
  ('Antwerp', 'Flanders', 'Belgium'),
  ('Ghent', 'Flanders', 'Belgium'),
  ('Bruges', 'Flanders', 'Belgium'),
  ('Brussels', 'Brussels-Capital', 'Belgium');

-- One row per town: single-valued variables at the level of the groups.
CREATE TABLE town_facts (
  town              varchar(40) NOT NULL PRIMARY KEY,
  population        integer NOT NULL,
  area_km2          real NOT NULL,
  main_industry     varchar(40) NOT NULL,
  unemployment_rate real
);
INSERT INTO town_facts VALUES
  ('Paris', 2102650, 105.4, 'finance', 7.1),
  ('Versailles', 83583, 26.18, 'public administration', 5.9),
  ('Créteil', 92265, 11.46, 'health care', 9.8),
  ('Lyon', 522250, 47.87, 'pharmaceuticals', 7.4),
  ('Grenoble', 156389, 18.13, 'electronics', 8.6),
  ('Saint-Étienne', 173089, 79.97, 'engineering', 10.9),
  ('Toulouse', 504078, 118.3, 'aerospace', 8.9),
  ('Montpellier', 302454, 56.88, 'health care', 11.2),
  ('Nîmes', 148104, 161.85, 'tourism', 12.4),
  ('Dijon', 156920, 40.41, 'food industry', 7.6),
  ('Besançon', 119198, 65.05, 'precision engineering', 8.1),
  ('Liège', 195278, 69.39, 'steel', 13.7),
  ('Namur', 112035, 175.69, 'public administration', 9.4),
  ('Charleroi', 201837, 102.08, 'glass', 17.2),
  ('Antwerp', 536079, 204.51, 'port and logistics', 8.3),
  ('Ghent', 265086, 156.18, 'chemicals', 6.2),
  ('Bruges', 118656, 138.4, 'tourism', 4.1),
  ('Brussels', 1222637, 161.38, 'public administration', 12.3);

-- Several rows per town: the share of its jobs in each industry, for a
-- set-valued variable with weights (town, industry, share).
CREATE TABLE town_industries (
  town     varchar(40) NOT NULL,
  industry varchar(40) NOT NULL,
  share    real NOT NULL,
  PRIMARY KEY (town, industry)
);
INSERT INTO town_industries
  SELECT town, main_industry, 0.4 FROM town_facts;
INSERT INTO town_industries
  SELECT town, 'retail', 0.25 FROM town_facts;
INSERT INTO town_industries
  SELECT town, 'public services', 0.2 FROM town_facts WHERE main_industry <> 'public administration';
INSERT INTO town_industries
  SELECT town, 'construction', 0.15 FROM town_facts;
INSERT INTO town_industries
  SELECT town, 'other services', 0.2 FROM town_facts WHERE main_industry = 'public administration';

-- The random stream: rand_stream.r is the 15-bit draw number i of the
-- classic generator state = state * 1103515245 + 12345 (mod 2^31) from the
-- seed 20240611. Each person uses ten consecutive draws.
CREATE TEMP TABLE rand_stream (i integer PRIMARY KEY, r integer NOT NULL);
INSERT INTO rand_stream
  WITH RECURSIVE stream(i, state) AS (
    SELECT 0, 20240611
    UNION ALL
    SELECT i + 1, (state * 1103515245 + 12345) % 2147483648 FROM stream WHERE i < 59999
  )
  SELECT i, (state / 65536) % 32768 FROM stream;

-- Towns are drawn in proportion to their population (in thousands).
CREATE TEMP TABLE town_ranges AS
  SELECT f.town, t.region, t.country,
         SUM(f.population / 1000) OVER (ORDER BY f.rowid) - f.population / 1000 AS low,
         SUM(f.population / 1000) OVER (ORDER BY f.rowid) AS high
  FROM town_facts f JOIN towns t ON t.town = f.town;

CREATE TEMP TABLE draws AS
  WITH RECURSIVE people(n) AS (SELECT 1 UNION ALL SELECT n + 1 FROM people WHERE n < 6000)
  SELECT n,
         r0.r % (SELECT MAX(high) FROM town_ranges) AS town_draw,
         16 + r1.r % 40 + r2.r % 35 AS age,
         r3.r AS sex_draw, r4.r % 100 AS occupation_draw, r5.r % 8 AS trade_draw,
         r6.r % 1000 AS income_draw, r7.r % 100 AS missing_draw, r8.r % 100 AS marital_draw,
         r9.r % 2001 AS weight_draw
  FROM people
  JOIN rand_stream r0 ON r0.i = 10 * (n - 1)
  JOIN rand_stream r1 ON r1.i = 10 * (n - 1) + 1
  JOIN rand_stream r2 ON r2.i = 10 * (n - 1) + 2
  JOIN rand_stream r3 ON r3.i = 10 * (n - 1) + 3
  JOIN rand_stream r4 ON r4.i = 10 * (n - 1) + 4
  JOIN rand_stream r5 ON r5.i = 10 * (n - 1) + 5
  JOIN rand_stream r6 ON r6.i = 10 * (n - 1) + 6
  JOIN rand_stream r7 ON r7.i = 10 * (n - 1) + 7
  JOIN rand_stream r8 ON r8.i = 10 * (n - 1) + 8
  JOIN rand_stream r9 ON r9.i = 10 * (n - 1) + 9;

CREATE TEMP TABLE jobs AS
  SELECT n,
         CASE
           WHEN age < 23 AND occupation_draw < 70 THEN 'student'
           WHEN age >= 65 THEN 'retired'
           WHEN occupation_draw < 8 THEN 'unemployed'
           WHEN occupation_draw < 12 THEN 'homemaker'
           ELSE CASE trade_draw
                  WHEN 0 THEN 'manager' WHEN 1 THEN 'professional'
                  WHEN 2 THEN 'technician' WHEN 3 THEN 'clerk'
                  WHEN 4 THEN 'service worker' WHEN 5 THEN 'craft worker'
                  WHEN 6 THEN 'farmer' ELSE 'labourer'
                END
         END AS occupation
  FROM draws;

-- The individuals. Income is missing (NULL) for about 3 in 100 people and
-- marital status for about 1 in 100.
CREATE TABLE survey (
  person_id      integer NOT NULL PRIMARY KEY,
  region         varchar(40) NOT NULL,
  town           varchar(40) NOT NULL,
  sex            varchar(6) NOT NULL,
  age            integer NOT NULL,
  income         real,
  occupation     varchar(30) NOT NULL,
  marital_status varchar(10),
  weight         real NOT NULL
);
INSERT INTO survey
  SELECT d.n,
         t.region,
         t.town,
         CASE WHEN d.sex_draw % 2 = 0 THEN 'female' ELSE 'male' END,
         d.age,
         CASE WHEN d.missing_draw < 3 THEN NULL
              ELSE ROUND((CASE j.occupation
                            WHEN 'manager' THEN 52000 WHEN 'professional' THEN 45000
                            WHEN 'technician' THEN 34000 WHEN 'clerk' THEN 27000
                            WHEN 'service worker' THEN 22000 WHEN 'craft worker' THEN 26000
                            WHEN 'farmer' THEN 21000 WHEN 'labourer' THEN 20000
                            WHEN 'retired' THEN 19000 WHEN 'unemployed' THEN 9000
                            WHEN 'student' THEN 4000 ELSE 1500
                          END)
                         * (0.6 + d.income_draw * 0.0009)
                         * (CASE t.country WHEN 'Belgium' THEN 1.05 ELSE 1.0 END), 2)
         END,
         j.occupation,
         CASE WHEN d.missing_draw = 99 THEN NULL
              WHEN d.age < 25 THEN CASE WHEN d.marital_draw < 90 THEN 'single' ELSE 'married' END
              WHEN d.age >= 75 THEN CASE WHEN d.marital_draw < 40 THEN 'widowed'
                                         WHEN d.marital_draw < 85 THEN 'married'
                                         WHEN d.marital_draw < 90 THEN 'divorced' ELSE 'single' END
              ELSE CASE WHEN d.marital_draw < 55 THEN 'married' WHEN d.marital_draw < 80 THEN 'single'
                        WHEN d.marital_draw < 95 THEN 'divorced' ELSE 'widowed' END
         END,
         ROUND(0.5 + d.weight_draw * 0.001, 3)
  FROM draws d
  JOIN jobs j ON j.n = d.n
  JOIN town_ranges t ON d.town_draw >= t.low AND d.town_draw < t.high;

CREATE INDEX survey_town_index ON survey(town);

-- A view for the common extraction: people grouped by town.
CREATE VIEW survey_by_town AS
  SELECT person_id, town, sex, age, income, occupation, marital_status, weight FROM survey;

COMMIT;
